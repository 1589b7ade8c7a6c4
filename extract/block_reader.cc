#include "extract/block_reader.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "catalogue/transpose.h"
#include "extract/line_fault.h"
#include "extract/line_plan.h"
#include "grid/grid_layout.h"

namespace veldmark::extract {

class BlockReader {
 public:
  BlockReader(const InputFile& input, const CellSet& cells, const Years& years,
              const Progress& progress)
      : cells_(cells),
        lines_(input, cells.rows(), years, progress),
        MissingCode_(static_cast<std::int16_t>(input.entry.MissingCode)),
        missing_(missing_line(input.entry.MissingCode)) {
    const std::int64_t year_count = std::int64_t{years.last} - years.first + 1;
    block_.month_count_ = static_cast<std::size_t>(year_count) * kMonthsPerYear;
  }

  SeriesBlock read() {
    find_cells();
    block_.values_ = make_large_buffer(block_.columns_.size() * block_.month_count_);
    for (std::size_t month = 0; month < block_.month_count_; ++month) {
      lines_.for_each(month, [&](std::size_t index, std::string_view line) {
        read_line(month, index, line);
      });
    }
    transpose_rows();
    return std::move(block_);
  }

 private:
  // Finds the cells that have data in the first month.
  void find_cells() {
    std::vector<std::int16_t> values;
    lines_.for_each(0, [&](std::size_t index, std::string_view line) {
      const std::span<const std::int32_t> columns = cells_.columns(index);
      values.resize(columns.size());
      read_fields(0, index, line, plan_cells(columns, columns, {}), values.data());
      block_.rows_.push_back(cells_.rows()[index]);
      block_.begin_.push_back(block_.columns_.size());
      for (std::size_t i = 0; i < columns.size(); ++i) {
        if (values[i] != MissingCode_) {
          block_.columns_.push_back(columns[i]);
        }
      }
    });
    block_.begin_.push_back(block_.columns_.size());
    late_columns_.resize(block_.rows_.size());
    for (std::size_t index = 0; index < block_.rows_.size(); ++index) {
      plans_.push_back(plan_of(index));
    }
  }

  [[nodiscard]] std::size_t cells_of_row(std::size_t index) const {
    return block_.begin_[index + 1] - block_.begin_[index];
  }

  [[nodiscard]] RowPlan plan_of(std::size_t index) const {
    const std::span<const std::int32_t> data_columns =
        std::span(block_.columns_).subspan(block_.begin_[index], cells_of_row(index));
    return plan_cells(cells_.columns(index), data_columns, late_columns_[index]);
  }

  void read_line(std::size_t month, std::size_t index, std::string_view line) {
    std::int16_t* values = block_.values_.data() +
                           block_.begin_[index] * block_.month_count_ +
                           month * cells_of_row(index);
    if (!read_fields(month, index, line, plans_[index], values)) {
      find_late_cells(index, line);
    }
    keep_late_cells(month, index, line);
  }

  // Reads the fields of a plan. Returns whether the line is as nearly all are, without
  // cells that begin to have data.
  bool read_fields(std::size_t month, std::size_t index, std::string_view line,
                   const RowPlan& plan, std::int16_t* values) const {
    if (read_usual_line(line, plan, missing_, values)) {
      return true;
    }
    expect_sound_fields(month, index, line, cells_.columns(index));
    if (!read_by_plan(line, plan, missing_, values)) {
      lines_.fail(month, index, "it can't be read; tersify --check tells more");
    }
    return false;
  }

  // Finds the cells that begin to have data with this line.
  void find_late_cells(std::size_t index, std::string_view line) {
    const std::size_t before = late_columns_[index].size();
    for (const FieldRun& run : plans_[index].runs) {
      for (std::int32_t i = 0; !run.has_data && i < run.count; ++i) {
        if (value_of(line, run.first_field + i) != MissingCode_) {
          late_columns_[index].push_back(run.first_field + i);
        }
      }
    }
    if (late_columns_[index].size() > before) {
      plans_[index] = plan_of(index);
    }
  }

  void keep_late_cells(std::size_t month, std::size_t index, std::string_view line) {
    const std::vector<std::int32_t>& columns = late_columns_[index];
    if (columns.empty()) {
      return;
    }
    expect_sound_fields(month, index, line, columns);
    for (const std::int32_t column : columns) {
      std::vector<std::int16_t>& series =
          block_.late_cells_[{.GridY = cells_.rows()[index], .GridX = column}];
      series.resize(block_.month_count_, MissingCode_);
      series[month] = value_of(line, column);
    }
  }

  // Turns each row from [month][cell] into [cell][month].
  void transpose_rows() {
    const std::size_t months = block_.month_count_;
    std::size_t most = 0;
    for (std::size_t index = 0; index < block_.rows_.size(); ++index) {
      most = std::max(most, cells_of_row(index));
    }
    LargeBuffer by_month = make_large_buffer(most * months);
    for (std::size_t index = 0; index < block_.rows_.size(); ++index) {
      const std::size_t cells = cells_of_row(index);
      std::int16_t* row = block_.values_.data() + block_.begin_[index] * months;
      std::copy_n(row, cells * months, by_month.data());
      transpose(by_month.data(), months, cells, row);
    }
  }

  void expect_sound_fields(std::size_t month, std::size_t index, std::string_view line,
                           std::span<const std::int32_t> columns) const {
    if (const auto fault = find_line_fault(line, columns)) {
      lines_.fail(month, index, *fault);
    }
  }

  const CellSet& cells_;
  FramedLines lines_;
  std::int16_t MissingCode_;
  std::string missing_;                                  // a line of missing codes
  std::vector<RowPlan> plans_;                           // of the rows
  std::vector<std::vector<std::int32_t>> late_columns_;  // of the rows
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
