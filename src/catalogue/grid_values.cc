#include "catalogue/grid_values.h"

#include <algorithm>

#include "catalogue/transpose.h"

namespace veldmark {
namespace {

bool is_requested(std::int32_t GridX, const GridRanges& ranges) {
  const auto [west, east] = ranges.columns();
  return west.contains(GridX) || east.contains(GridX);
}

}  // namespace

GridValues::GridValues(const GridRanges& ranges, std::int32_t YearCount,
                       std::int32_t MissingCode)
    : first_row_(std::max(ranges.FirstRow, 1)),
      last_row_(ranges.LastRow),
      month_count_(static_cast<std::size_t>(YearCount) * kMonthsPerYear),
      MissingCode_(MissingCode),
      row_begin_{0} {
  for (std::int32_t GridX = 1; GridX <= kGridColumns; ++GridX) {
    if (is_requested(GridX, ranges)) {
      columns_.push_back(GridX);
    }
  }
}

void GridValues::open_next_row(const RowValues& january) {
  for (const std::int32_t column : columns_) {
    const std::int16_t value = january[static_cast<std::size_t>(column)];
    if (value != MissingCode_) {
      data_columns_.push_back(column);
      january_.push_back(value);
    }
  }
  row_begin_.push_back(data_columns_.size());
}

void GridValues::lay_out() {
  values_ = make_large_buffer(data_columns_.size() * month_count_);
  for (std::int32_t row = first_row_; row <= last_row_; ++row) {
    const auto begin =
        january_.begin() + static_cast<std::ptrdiff_t>(row_begin_[row_index(row)]);
    const std::span<std::int16_t> cells = month_of_row(0, row);
    std::copy_n(begin, cells.size(), cells.begin());
  }
  january_ = {};
}

void GridValues::store_row(std::size_t month, std::int32_t row,
                           const RowValues& row_values) {
  const std::span<const std::int32_t> columns = data_columns(row);
  const std::span<std::int16_t> cells = month_of_row(month, row);
  for (std::size_t i = 0; i < columns.size(); ++i) {
    cells[i] = row_values[static_cast<std::size_t>(columns[i])];
  }
}

std::span<const std::int32_t> GridValues::data_columns(std::int32_t row) const {
  if (row < first_row_ || row > last_row_) {
    return {};
  }
  const std::size_t begin = row_begin_[row_index(row)];
  const std::size_t end = row_begin_[row_index(row) + 1];
  return std::span(data_columns_).subspan(begin, end - begin);
}

std::span<std::int16_t> GridValues::month_of_row(std::size_t month, std::int32_t row) {
  return {values_.data() + place_of_month(month, row), data_columns(row).size()};
}

std::span<const std::int16_t> GridValues::month_of_row(std::size_t month,
                                                       std::int32_t row) const {
  return {values_.data() + place_of_month(month, row), data_columns(row).size()};
}

std::size_t GridValues::place_of_month(std::size_t month, std::int32_t row) const {
  return row_begin_[row_index(row)] * month_count_ + month * data_columns(row).size();
}

void transpose_row(const GridValues& values, std::int32_t row,
                   std::vector<std::int16_t>& series) {
  const std::size_t cells = values.data_columns(row).size();
  const std::size_t months = values.month_count();
  series.resize(cells * months);
  if (cells == 0) {
    return;
  }
  const std::int16_t* from = values.month_of_row(0, row).data();
  const std::size_t whole_cells = cells - cells % kSquare;
  const std::size_t whole_months = months - months % kSquare;
  for (std::size_t cell = 0; cell < whole_cells; cell += kSquare) {
    for (std::size_t month = 0; month < whole_months; month += kSquare) {
      transpose_square(from + month * cells + cell, cells,
                       &series[cell * months + month], months);
    }
  }
  // The rest that is no whole square: some cells of all months, some months of the
  // others.
  for (std::size_t cell = 0; cell < cells; ++cell) {
    const std::size_t first_month = cell < whole_cells ? whole_months : 0;
    for (std::size_t month = first_month; month < months; ++month) {
      series[cell * months + month] = from[month * cells + cell];
    }
  }
}

}  // namespace veldmark
