// The block of monthly values that a search has read.

#ifndef VELDMARK_CATALOGUE_GRID_VALUES_H_
#define VELDMARK_CATALOGUE_GRID_VALUES_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "selection/grid_geometry.h"

namespace veldmark {

// The values of one line by grid column; place 0 stands for what falls west of the
// grid.
using RowValues = std::array<std::int16_t, kGridColumns + 1>;

// Values in stored units (tenths or hundredths, see the catalogue), addressed by year,
// month, row and column, each counted from 1; year 1 is FYOD. Only the cells of the
// search's ranges that lie on the grid are held.
class GridValues {
 public:
  // Makes room for the cells of `ranges` in `YearCount` years; all values are 0.
  GridValues(const GridRanges& ranges, std::int32_t YearCount);

  [[nodiscard]] std::int32_t YearCount() const { return year_count_; }

  // REQUIRES: the cell is on the grid and inside the ranges.
  [[nodiscard]] std::int16_t at(std::int32_t year, std::int32_t month, std::int32_t row,
                                std::int32_t column) const {
    return values_[row_place(year, month, row) +
                   place_of_column_[static_cast<std::size_t>(column)]];
  }

  // Keeps the values of the held columns of a row in one month.
  void store_row(std::int32_t year, std::int32_t month, std::int32_t row,
                 const RowValues& row_values);

  // Has the cell data? It has none when its January value of FYOD is `MissingCode`; no
  // other month is looked at.
  [[nodiscard]] bool has_data(std::int32_t row, std::int32_t column,
                              std::int32_t MissingCode) const {
    return at(1, 1, row, column) != MissingCode;
  }

 private:
  [[nodiscard]] std::size_t row_place(std::int32_t year, std::int32_t month,
                                      std::int32_t row) const {
    const auto month_index = static_cast<std::size_t>(year - 1) * kMonthsPerYear +
                             static_cast<std::size_t>(month - 1);
    return (static_cast<std::size_t>(row - first_row_) * month_count() + month_index) *
           columns_.size();
  }

  [[nodiscard]] std::size_t month_count() const {
    return static_cast<std::size_t>(year_count_) * kMonthsPerYear;
  }

  std::int32_t first_row_;
  std::int32_t year_count_;
  std::vector<std::int32_t> columns_;  // the held columns, ascending
  std::array<std::size_t, kGridColumns + 1> place_of_column_{};
  std::vector<std::int16_t> values_;  // [row][month][column]
};

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_GRID_VALUES_H_
