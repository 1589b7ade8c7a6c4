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

GridValues::GridValues(const GridRanges& ranges, std::int32_t YearCount)
    : first_row_(std::max(ranges.FirstRow, 1)),
      last_row_(ranges.LastRow),
      month_count_(static_cast<std::size_t>(YearCount) * kMonthsPerYear) {}

std::span<const std::int32_t> GridValues::data_columns(std::int32_t GridY) const {
  if (GridY < first_row_ || GridY > last_row_) {
    return {};
  }
  const std::size_t begin = row_offsets_[row_index(GridY)];
  const std::size_t end = row_offsets_[row_index(GridY) + 1];
  return std::span(data_columns_).subspan(begin, end - begin);
}

std::span<const std::int16_t> GridValues::month_of_row(std::size_t month,
                                                       std::int32_t GridY) const {
  return {values_.data() + offset_of_month(month, GridY), data_columns(GridY).size()};
}

std::size_t GridValues::offset_of_month(std::size_t month, std::int32_t GridY) const {
  return row_offsets_[row_index(GridY)] * month_count_ +
         month * data_columns(GridY).size();
}

GridValuesBuilder::GridValuesBuilder(const GridRanges& ranges, std::int32_t YearCount,
                                     std::int32_t MissingCode)
    : values_(ranges, YearCount), MissingCode_(MissingCode) {
  for (std::int32_t GridX = 1; GridX <= kGridColumns; ++GridX) {
    if (is_requested(GridX, ranges)) {
      columns_.push_back(GridX);
    }
  }
}

void GridValuesBuilder::add_row(const RowValues& january) {
  for (const std::int32_t GridX : columns_) {
    const std::int16_t value = january[static_cast<std::size_t>(GridX)];
    if (value != MissingCode_) {
      values_.data_columns_.push_back(GridX);
      january_.push_back(value);
    }
  }
  values_.row_offsets_.push_back(values_.data_columns_.size());
}

void GridValuesBuilder::allocate() {
  values_.values_ =
      make_large_buffer(values_.data_columns_.size() * values_.month_count_);
  for (std::int32_t GridY = values_.first_row_; GridY <= values_.last_row_; ++GridY) {
    const std::size_t offset = values_.row_offsets_[values_.row_index(GridY)];
    const auto begin = january_.begin() + static_cast<std::ptrdiff_t>(offset);
    const std::span<std::int16_t> cells = month_of_row(0, GridY);
    std::copy_n(begin, cells.size(), cells.begin());
  }
}

void GridValuesBuilder::store_row(std::size_t month, std::int32_t GridY,
                                  const RowValues& row_values) {
  const std::span<const std::int32_t> columns = data_columns(GridY);
  const std::span<std::int16_t> cells = month_of_row(month, GridY);
  for (std::size_t i = 0; i < columns.size(); ++i) {
    cells[i] = row_values[static_cast<std::size_t>(columns[i])];
  }
}

std::span<std::int16_t> GridValuesBuilder::month_of_row(std::size_t month,
                                                        std::int32_t GridY) {
  return {values_.values_.data() + values_.offset_of_month(month, GridY),
          data_columns(GridY).size()};
}

void transpose_row(const GridValues& values, std::int32_t GridY,
                   std::vector<std::int16_t>& series) {
  const std::size_t cells = values.data_columns(GridY).size();
  const std::size_t months = values.month_count();
  series.resize(cells * months);
  if (cells == 0) {
    return;
  }
  transpose(values.month_of_row(0, GridY).data(), months, cells, series.data());
}

}  // namespace veldmark
