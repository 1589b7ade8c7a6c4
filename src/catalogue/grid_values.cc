#include "catalogue/grid_values.h"

#include <algorithm>

namespace veldmark {
namespace {

bool is_wanted(std::int32_t column, const GridRanges& ranges) {
  const bool in_first = ranges.FirstCol <= column && column <= ranges.LastCol;
  const bool in_east = ranges.CrossesDateLine && ranges.EastFirstCol <= column &&
                       column <= ranges.EastLastCol;
  return in_first || in_east;
}

}  // namespace

GridValues::GridValues(const GridRanges& ranges, std::int32_t YearCount)
    : first_row_(std::max(ranges.FirstRow, 1)), year_count_(YearCount) {
  for (std::int32_t column = 1; column <= kGridColumns; ++column) {
    if (is_wanted(column, ranges)) {
      place_of_column_[static_cast<std::size_t>(column)] = columns_.size();
      columns_.push_back(column);
    }
  }
  const std::int32_t row_count = std::max(ranges.LastRow - first_row_ + 1, 0);
  values_.resize(static_cast<std::size_t>(row_count) * month_count() * columns_.size());
}

void GridValues::store_row(std::int32_t year, std::int32_t month, std::int32_t row,
                           const RowValues& row_values) {
  std::size_t place = row_place(year, month, row);
  for (const std::int32_t column : columns_) {
    values_[place] = row_values[static_cast<std::size_t>(column)];
    ++place;
  }
}

}  // namespace veldmark
