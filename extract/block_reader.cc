#include "extract/block_reader.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "catalogue/row_plan.h"
#include "extract/line_fault.h"
#include "grid/grid_layout.h"
#include "util/failure.h"
#include "util/fixed_field.h"
#include "util/in_quotes.h"

namespace veldmark::extract {
namespace {

// Large enough that a system call costs little by comparison, and small enough for the
// second-level cache.
constexpr std::size_t kPieceSize = std::size_t{256} * 1024;

constexpr std::size_t byte_of(std::int32_t column) {
  return static_cast<std::size_t>(column - 1) * kFieldWidth;
}

// How the fields of a row's cells are read once it is known which of them have data.
RowPlan plan_cells(std::span<const std::int32_t> columns,
                   std::span<const std::int32_t> data_columns) {
  RowPlan plan;
  for (const std::int32_t column : columns) {
    const bool has_data =
        std::binary_search(data_columns.begin(), data_columns.end(), column);
    if (!plan.runs.empty() && plan.runs.back().has_data == has_data &&
        plan.runs.back().first_field + plan.runs.back().count == column) {
      ++plan.runs.back().count;
    } else {
      plan.runs.push_back({column, 1, has_data});
    }
  }
  return plan;
}

// Could a field of `run` hold a value beyond 16 bits? Those have five digits, the first
// of them a 3 or more; blanks and signs before the first digit make the number smaller.
bool may_be_too_large(std::string_view line, const FieldRun& run) {
  constexpr unsigned kDigits = 7;  // from '3' to '9'
  bool found = false;
  const char* field = line.data() + byte_of(run.first_field);
  for (std::int32_t i = 0; i < run.count; ++i) {
    found |= static_cast<unsigned>(*field - '3') < kDigits;
    field += kFieldWidth;
  }
  return found;
}

}  // namespace

class BlockReader {
 public:
  BlockReader(const InputFile& input, const CellSet& cells, const Years& years,
              const Progress& progress)
      : input_(input),
        cells_(cells),
        progress_(progress),
        line_size_(kLineLength + input.line_end_size),
        first_month_((years.first - input.years.first) * kMonthsPerYear),
        missing_(missing_line(input.entry.MissingCode)),
        buffer_(1 + kPieceSize + line_size_) {
    const auto year_count = static_cast<std::size_t>(years.last - years.first + 1);
    block_.month_count_ = year_count * kMonthsPerYear;
  }

  SeriesBlock read() {
    find_cells();
    block_.values_ = make_large_buffer(block_.columns_.size() * block_.month_count_);
    for (std::size_t month = 0; month < block_.month_count_; ++month) {
      for_each_line(month, [&](std::size_t index, std::string_view line) {
        read_line(month, index, line);
      });
    }
    transpose_rows();
    return std::move(block_);
  }

 private:
  // Finds the cells that have data in the first month.
  void find_cells() {
    for_each_line(0, [&](std::size_t index, std::string_view line) {
      expect_sound_line(0, index, line);
      block_.rows_.push_back(cells_.rows()[index]);
      block_.begin_.push_back(block_.columns_.size());
      for (const std::int32_t column : cells_.columns(index)) {
        if (has_data(line, column)) {
          block_.columns_.push_back(column);
        }
      }
      plans_.push_back(
          plan_cells(cells_.columns(index),
                     std::span(block_.columns_).subspan(block_.begin_.back())));
    });
    block_.begin_.push_back(block_.columns_.size());
  }

  // The value of a field that is known to be an integer of 16 bits.
  [[nodiscard]] static std::int16_t value_of(std::string_view line,
                                             std::int32_t column) {
    const std::optional<std::int32_t> value =
        parse_integer(line.substr(byte_of(column), kFieldWidth));
    return static_cast<std::int16_t>(value.value_or(0));
  }

  [[nodiscard]] bool has_data(std::string_view line, std::int32_t column) const {
    return value_of(line, column) != input_.entry.MissingCode;
  }

  void read_line(std::size_t month, std::size_t index, std::string_view line) {
    const RowPlan& plan = plans_[index];
    const std::size_t row_cells = block_.begin_[index + 1] - block_.begin_[index];
    std::int16_t* values = block_.values_.data() +
                           block_.begin_[index] * block_.month_count_ +
                           month * row_cells;
    const bool is_read = read_by_plan(line, plan, missing_, values);
    bool suspicious = !is_read;
    bool late_cells = false;
    for (const FieldRun& run : plan.runs) {
      if (run.has_data) {
        suspicious |= may_be_too_large(line, run);
      } else {
        const std::size_t size = static_cast<std::size_t>(run.count) * kFieldWidth;
        late_cells |= line.substr(byte_of(run.first_field), size) !=
                      std::string_view(missing_).substr(0, size);
      }
    }
    if (suspicious || late_cells) {
      expect_sound_line(month, index, line);
    }
    if (!is_read) {
      fail(month, index, "it can't be read; tersify --check tells more");
    }
    if (late_cells) {
      keep_late_cells(month, index, line);
    }
  }

  // Keeps the values of cells that had none in the first month.
  void keep_late_cells(std::size_t month, std::size_t index, std::string_view line) {
    for (const FieldRun& run : plans_[index].runs) {
      for (std::int32_t i = 0; !run.has_data && i < run.count; ++i) {
        const std::int32_t column = run.first_field + i;
        if (!has_data(line, column)) {
          continue;
        }
        const auto MissingCode = static_cast<std::int16_t>(input_.entry.MissingCode);
        std::vector<std::int16_t>& series =
            block_.late_cells_[{.GridY = cells_.rows()[index], .GridX = column}];
        series.resize(block_.month_count_, MissingCode);
        series[month] = value_of(line, column);
      }
    }
  }

  // Turns each row from [month][cell] into [cell][month].
  void transpose_rows() {
    const std::size_t months = block_.month_count_;
    std::vector<std::int16_t> by_month;
    for (std::size_t index = 0; index < block_.rows_.size(); ++index) {
      const std::size_t cells = block_.begin_[index + 1] - block_.begin_[index];
      std::int16_t* row = block_.values_.data() + block_.begin_[index] * months;
      by_month.assign(row, row + cells * months);
      for (std::size_t cell = 0; cell < cells; ++cell) {
        for (std::size_t month = 0; month < months; ++month) {
          row[cell * months + month] = by_month[month * cells + cell];
        }
      }
    }
  }

  // Hands the lines of all rows in a month of the block to `use_line`, with the row's
  // index. Neighbouring rows are read in one piece.
  template <typename UseLine>
  void for_each_line(std::size_t month, UseLine use_line) {
    const std::span<const std::int32_t> rows = cells_.rows();
    const std::size_t longest = kPieceSize / line_size_;
    std::size_t begin = 0;
    while (begin < rows.size()) {
      std::size_t end = begin + 1;
      while (end < rows.size() && rows[end] == rows[end - 1] + 1 &&
             end - begin < longest) {
        ++end;
      }
      read_piece(month, begin, end - begin);
      for (std::size_t index = begin; index < end; ++index) {
        const char* line = buffer_.data() + 1 + (index - begin) * line_size_;
        expect_frame(month, index, line);
        use_line(index, std::string_view(line, kLineLength));
      }
      begin = end;
    }
  }

  [[nodiscard]] std::int64_t line_index(std::size_t month, std::size_t index) const {
    return (std::int64_t{first_month_} + static_cast<std::int64_t>(month)) * kGridRows +
           cells_.rows()[index] - 1;
  }

  // Puts lines into the buffer, behind the last character of the line before them.
  void read_piece(std::size_t month, std::size_t index, std::size_t count) {
    const std::int64_t offset =
        line_index(month, index) * static_cast<std::int64_t>(line_size_);
    const std::size_t size = count * line_size_;
    const auto available = static_cast<std::size_t>(input_.size - offset);
    if (offset == 0) {
      buffer_[0] = '\n';
      read_bytes(0, buffer_.data() + 1, std::min(size, available));
    } else {
      read_bytes(offset - 1, buffer_.data(), 1 + std::min(size, available));
    }
    if (size > available) {  // the last line lacks its line end
      const std::string_view end = input_.line_end_size == 1 ? "\n" : "\r\n";
      end.copy(buffer_.data() + 1 + available, end.size());
    }
    if (progress_) {
      progress_(static_cast<std::int64_t>(size));
    }
  }

  void read_bytes(std::int64_t offset, char* buffer, std::size_t size) const {
    errno = 0;
    if (!input_.file.read_at(offset, buffer, size)) {
      throw Failure(
          "cannot read " + in_quotes(input_.name) + ": " +
          (errno != 0 ? std::generic_category().message(errno) : "it became shorter"));
    }
  }

  [[noreturn]] void fail(std::size_t month, std::size_t index,
                         const std::string& what) const {
    throw Failure(in_quotes(input_.name) + ": line " +
                  std::to_string(line_index(month, index) + 1) + ": " + what);
  }

  // A line has a line end before it and one at its end.
  void expect_frame(std::size_t month, std::size_t index, const char* line) const {
    const std::string_view expected = input_.line_end_size == 1 ? "\n" : "\r\n";
    if (line[-1] != '\n') {
      fail(month, index, "it does not begin in its place; tersify --check tells more");
    }
    if (std::string_view(line + kLineLength, expected.size()) != expected) {
      fail(month, index,
           "it does not end after 3600 characters; tersify --check tells more");
    }
  }

  void expect_sound_line(std::size_t month, std::size_t index,
                         std::string_view line) const {
    if (const auto fault = find_line_fault(line, cells_.columns(index))) {
      fail(month, index, *fault);
    }
  }

  const InputFile& input_;
  const CellSet& cells_;
  const Progress& progress_;
  std::size_t line_size_;
  std::int32_t first_month_;  // of the block in the file, counted from 0
  std::string missing_;       // a line of missing codes
  std::vector<char> buffer_;
  std::vector<RowPlan> plans_;  // of the rows
  SeriesBlock block_;
};

SeriesBlock read_cells(const InputFile& input, const CellSet& cells, const Years& years,
                       const Progress& progress) {
  return BlockReader(input, cells, years, progress).read();
}

std::int64_t bytes_to_read(const InputFile& input, const CellSet& cells,
                           const Years& years) {
  const std::int64_t months =
      std::int64_t{years.last - years.first + 1} * kMonthsPerYear;
  const auto lines = static_cast<std::int64_t>(cells.rows().size()) * (months + 1);
  return lines * static_cast<std::int64_t>(kLineLength + input.line_end_size);
}

}  // namespace veldmark::extract
