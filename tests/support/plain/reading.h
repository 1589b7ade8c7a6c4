// A plain definition of reading a data file: splits its text into lines, without a fast
// path for regular files.

#ifndef VELDMARK_TESTS_SUPPORT_PLAIN_READING_H_
#define VELDMARK_TESTS_SUPPORT_PLAIN_READING_H_

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "catalogue/block_request.h"
#include "support/plain/rows.h"
#include "support/plain/texts.h"

namespace veldmark::plain {

// How reading ended, and the series of the cells with data, by row and column.
struct Block {
  std::string end = "complete";  // or the fault, as testing::text_of has it
  std::map<std::pair<std::int32_t, std::int32_t>, std::vector<std::int16_t>> cells;

  bool operator==(const Block&) const = default;
};

// Prints a block in messages of failed tests.
inline void PrintTo(const Block& block, std::ostream* out) {
  *out << block.end << ", " << block.cells.size() << " cells";
}

// Reads the block of a search, line by line.
class Reading {
 public:
  Reading(std::string_view text, const BlockRequest& request)
      : text_(text), request_(request), columns_(columns(request.ranges)) {}

  [[nodiscard]] Block block() {
    for (std::int32_t year = 1901; year <= request_.years.LYOD; ++year) {
      for (std::int32_t month = 1; month <= 12; ++month) {
        for (std::int32_t row = 1; row <= 360; ++row) {
          const std::string fault = read_line(year, month, row);
          if (!fault.empty()) {
            return {fault + " line " + std::to_string(number_), {}};
          }
        }
      }
    }
    return std::move(block_);
  }

 private:
  // Reads the next line. Returns how reading ends there, "" if it continues.
  std::string read_line(std::int32_t year, std::int32_t month, std::int32_t row) {
    const GridRanges& ranges = request_.ranges;
    const std::optional<Line> line = take_line(text_);
    ++number_;
    if (year < request_.years.FYOD || row < ranges.FirstRow || row > ranges.LastRow) {
      return line ? "" : "end at skipped";
    }
    // The newline can be missing only after a last line of 3600 characters.
    if (!line || (!line->ended && line->text.size() < 3600)) {
      return "end at requested";
    }
    const Row values = read(line->text, ranges);
    if (values.bad_field) {
      return "bad field " + std::to_string(*values.bad_field) + " of";
    }
    add(row, values, year == request_.years.FYOD && month == 1);
    return "";
  }

  // A cell has data if its first January is not missing.
  void add(std::int32_t row, const Row& values, bool first) {
    for (const std::int32_t column : columns_) {
      const std::int16_t value = values.value(column).value_or(0);
      if (first && value != request_.MissingCode) {
        block_.cells[{row, column}] = {value};
      } else if (!first) {
        const auto cell = block_.cells.find({row, column});
        if (cell != block_.cells.end()) {
          cell->second.push_back(value);
        }
      }
    }
  }

  std::string_view text_;
  const BlockRequest& request_;
  std::vector<std::int32_t> columns_;
  std::int64_t number_ = 0;  // of the line that was read last
  Block block_;
};

}  // namespace veldmark::plain

#endif  // VELDMARK_TESTS_SUPPORT_PLAIN_READING_H_
