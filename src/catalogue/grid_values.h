// The block of monthly values that a search reads.

#ifndef VELDMARK_CATALOGUE_GRID_VALUES_H_
#define VELDMARK_CATALOGUE_GRID_VALUES_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "selection/grid_geometry.h"
#include "util/large_buffer.h"

namespace veldmark {

// The values of one line, indexed by GridX; index 0 takes what lies west of the grid.
using RowValues = std::array<std::int16_t, kGridColumns + 1>;

// The values, in stored units (tenths or hundredths, see the catalogue), of the cells
// with data. A cell has data if its value for January of FYOD is not the missing code;
// no other month is looked at. Other cells are not stored.
//
// Rows and columns are counted from 1. Months are counted from 0 (January of FYOD) to
// month_count() - 1 (December of LYOD).
class GridValues {
 public:
  // Returns the columns of the cells with data in row `GridY`, ascending; empty for a
  // row outside the ranges.
  [[nodiscard]] std::span<const std::int32_t> data_columns(std::int32_t GridY) const;

  // Returns the values of one month of the cells with data in row `GridY`, in the order
  // of data_columns.
  [[nodiscard]] std::span<const std::int16_t> month_of_row(std::size_t month,
                                                           std::int32_t GridY) const;

  [[nodiscard]] std::size_t month_count() const { return month_count_; }

 private:
  friend class GridValuesBuilder;

  GridValues(const GridRanges& ranges, std::int32_t YearCount);

  [[nodiscard]] std::size_t row_index(std::int32_t GridY) const {
    return static_cast<std::size_t>(GridY - first_row_);
  }
  [[nodiscard]] std::size_t offset_of_month(std::size_t month,
                                            std::int32_t GridY) const;

  std::int32_t first_row_;
  std::int32_t last_row_;
  std::size_t month_count_;
  std::vector<std::int32_t> data_columns_;  // of all rows, one after another

  // Offset of each row's first cell in data_columns_, plus the end.
  std::vector<std::size_t> row_offsets_{0};

  // [row][month][cell]: what is stored while reading is contiguous, and one row fits
  // into the second-level cache when it is transposed into series. With [cell][month]
  // every line that is read would be scattered over the whole block.
  LargeBuffer values_;
};

// Builds GridValues while a file is read, in three steps: add_row with January of FYOD
// for every row, allocate, then store_row or month_of_row for the other months.
class GridValuesBuilder {
 public:
  // Builds values for the cells of `ranges` that lie on the grid, for `YearCount`
  // years.
  GridValuesBuilder(const GridRanges& ranges, std::int32_t YearCount,
                    std::int32_t MissingCode);

  // Adds the next row: finds its cells with data from the values of January of FYOD.
  // Requires a call for every row of the ranges that lies on the grid, ascending.
  void add_row(const RowValues& january);

  // Allocates memory for all months of the cells with data. Requires that all rows have
  // been added.
  void allocate();

  // Stores one month (1 or later) of row `GridY`. Requires that `allocate` was called.
  void store_row(std::size_t month, std::int32_t GridY, const RowValues& row_values);

  // Returns the memory for that month of the cells with data, for a caller that writes
  // only their values. Requires that `allocate` was called.
  [[nodiscard]] std::span<std::int16_t> month_of_row(std::size_t month,
                                                     std::int32_t GridY);

  // Returns the columns of the cells with data in row `GridY`, ascending. Requires that
  // the row has been added.
  [[nodiscard]] std::span<const std::int32_t> data_columns(std::int32_t GridY) const {
    return values_.data_columns(GridY);
  }

  [[nodiscard]] std::size_t month_count() const { return values_.month_count(); }

  // Returns the values. Requires that all months of all rows have been stored.
  [[nodiscard]] GridValues finish() && { return std::move(values_); }

 private:
  GridValues values_;
  std::int32_t MissingCode_;
  std::vector<std::int32_t> columns_;  // requested and on the grid, ascending
  std::vector<std::int16_t> january_;  // parallel to data_columns_, until `allocate`
};

// Transposes row `GridY` into the series of its cells: the series of the cell in
// data_columns(GridY)[i] starts at series[i * month_count].
void transpose_row(const GridValues& values, std::int32_t GridY,
                   std::vector<std::int16_t>& series);

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_GRID_VALUES_H_
