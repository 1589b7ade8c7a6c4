// The reading of a search's block as the format's description has it, line after line.

#ifndef VELDMARK_TESTS_FUZZ_PLAIN_READING_H_
#define VELDMARK_TESTS_FUZZ_PLAIN_READING_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/block_request.h"
#include "catalogue/row_format.h"
#include "plain_twins.h"
#include "selection/search_region.h"

namespace veldmark::fuzz {

// What a reading comes to: values with their places, or how it ended.
struct Outcome {
  std::string end;
  std::vector<std::int32_t> cells;  // row and column of each cell
  std::vector<std::int16_t> values;

  bool operator==(const Outcome&) const = default;
};

// Reads a file's text as the format's description has it, line after line.
class PlainReading {
 public:
  PlainReading(std::string_view text, const BlockRequest& request)
      : text_(text), request_(request) {}

  Outcome read() {
    for (std::int32_t i = 0; i < request_.years.SkipLines(); ++i) {
      if (!take_line()) return {"end at a skipped line", {}, {}};
    }
    const std::int32_t months = request_.years.YearCount() * kMonthsPerYear;
    for (std::int32_t month = 0; month < months; ++month) {
      for (std::int32_t row = 1; row <= kGridRows; ++row) {
        const std::string end = read_line(month, row);
        if (!end.empty()) return {end, {}, {}};
      }
    }
    return collected();
  }

 private:
  struct Line {
    std::string text;
    bool ended;
  };

  std::optional<Line> take_line() {
    if (text_.empty()) return std::nullopt;
    const std::size_t end = text_.find('\n');
    Line line{std::string(text_.substr(0, end)), end != std::string_view::npos};
    text_.remove_prefix(line.ended ? end + 1 : text_.size());
    if (line.text.ends_with('\r')) line.text.pop_back();
    line.text.resize(std::min(line.text.size(), kLineLength));
    return line;
  }

  // Reads the next line; gives how the reading ends there, "" when it goes on.
  std::string read_line(std::int32_t month, std::int32_t row) {
    const GridRanges& ranges = request_.ranges;
    const std::optional<Line> line = take_line();
    if (row < ranges.FirstRow || row > ranges.LastRow) {
      return line ? "" : "end at a skipped line";
    }
    if (!line || (!line->ended && line->text.size() < kLineLength)) {
      return "end at a requested line";
    }
    const auto values = plain_row(line->text, ranges);
    if (!values) {
      return "bad line";
    }
    if (month == 0) find_cells(row, *values);
    for (std::size_t i = 0; i < cells_.size(); ++i) {
      if (cells_[i].row == row) {
        cells_[i].series.push_back(
            values->at(static_cast<std::size_t>(cells_[i].column)));
      }
    }
    return "";
  }

  void find_cells(std::int32_t row, const std::vector<std::int16_t>& january) {
    for (const std::int32_t column : plain_columns(request_.ranges)) {
      if (january.at(static_cast<std::size_t>(column)) != request_.MissingCode) {
        cells_.push_back({row, column, {}});
      }
    }
  }

  // The cells row by row, and of each row month by month.
  [[nodiscard]] Outcome collected() const {
    Outcome outcome;
    for (const Cell& cell : cells_) {
      outcome.cells.insert(outcome.cells.end(), {cell.row, cell.column});
    }
    for (std::size_t begin = 0, end = 0; begin < cells_.size(); begin = end) {
      while (end < cells_.size() && cells_[end].row == cells_[begin].row) ++end;
      for (std::size_t month = 0; month < cells_[begin].series.size(); ++month) {
        for (std::size_t i = begin; i < end; ++i) {
          outcome.values.push_back(cells_[i].series[month]);
        }
      }
    }
    return outcome;
  }

  struct Cell {
    std::int32_t row;
    std::int32_t column;
    std::vector<std::int16_t> series;
  };

  std::string_view text_;
  const BlockRequest& request_;
  std::vector<Cell> cells_;
};

}  // namespace veldmark::fuzz

#endif  // VELDMARK_TESTS_FUZZ_PLAIN_READING_H_
