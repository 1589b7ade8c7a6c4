// The block of monthly values that a search has read.

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

// The values of one line by column (GridX); index 0 stands for what falls west of the
// grid.
using RowValues = std::array<std::int16_t, kGridColumns + 1>;

// Values in stored units (tenths or hundredths, see the catalogue) of the cells that
// have data: those whose January of FYOD is not the missing code. No other month is
// looked at, and cells without data are not kept.
//
// Rows and columns are counted from 1, months from 0, January of FYOD, to
// month_count() - 1, December of LYOD.
class GridValues {
 public:
  // Returns the columns of row `GridY` whose cells have data, ascending. A row without
  // any, or outside the ranges, has none.
  [[nodiscard]] std::span<const std::int32_t> data_columns(std::int32_t GridY) const;

  // Returns one month of the cells of row `GridY` that have data, in the order of
  // data_columns.
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
  std::vector<std::int32_t> data_columns_;  // of all rows, row by row

  // Offset of each row's first cell in data_columns_, plus the end.
  std::vector<std::size_t> row_offsets_{0};

  // [row][month][cell]: stores while reading are contiguous, and a row is small enough
  // to be transposed into series in the second-level cache. Storing cell by cell
  // instead would scatter every month over the whole block.
  LargeBuffer values_;
};

// Makes GridValues while a file is read, in three steps: every row is opened with its
// January of FYOD, memory for all months is laid out, and the other months are stored.
class GridValuesBuilder {
 public:
  // For the cells of `ranges` that lie on the grid, in `YearCount` years.
  GridValuesBuilder(const GridRanges& ranges, std::int32_t YearCount,
                    std::int32_t MissingCode);

  // Finds the cells of the next row that have data, from the values of January of FYOD.
  // Called for every row of the ranges that lies on the grid, upward.
  void add_row(const RowValues& january);

  // Makes memory for all months of the cells that have data. Requires that all rows
  // have been opened.
  void allocate();

  // Stores one month (1 or later) of the cells of row `GridY` that have data. Requires
  // allocate.
  void store_row(std::size_t month, std::int32_t GridY, const RowValues& row_values);

  // The same for who has the values of just these cells: the memory that holds them.
  [[nodiscard]] std::span<std::int16_t> month_of_row(std::size_t month,
                                                     std::int32_t GridY);

  // Returns the columns of row `GridY` whose cells have data, ascending. Requires that
  // the row has been opened.
  [[nodiscard]] std::span<const std::int32_t> data_columns(std::int32_t GridY) const {
    return values_.data_columns(GridY);
  }

  [[nodiscard]] std::size_t month_count() const { return values_.month_count(); }

  // Hands out the values. Requires that all months of all rows have been stored.
  [[nodiscard]] GridValues finish() && { return std::move(values_); }

 private:
  GridValues values_;
  std::int32_t MissingCode_;
  std::vector<std::int32_t> columns_;  // requested and on the grid, ascending
  std::vector<std::int16_t> january_;  // like data_columns_, until the layout
};

// Transposes a row into the series of its cells: cell i of data_columns(GridY) gets
// series[i * month_count] up to series[(i + 1) * month_count - 1].
void transpose_row(const GridValues& values, std::int32_t GridY,
                   std::vector<std::int16_t>& series);

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_GRID_VALUES_H_
