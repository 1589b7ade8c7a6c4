// The block of monthly values that a search has read.

#ifndef VELDMARK_CATALOGUE_GRID_VALUES_H_
#define VELDMARK_CATALOGUE_GRID_VALUES_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "selection/grid_geometry.h"
#include "util/large_buffer.h"

namespace veldmark {

// The values of one line by grid column; place 0 stands for what falls west of the
// grid.
using RowValues = std::array<std::int16_t, kGridColumns + 1>;

// Values in stored units (tenths or hundredths, see the catalogue) of the cells that
// have data: those whose January of FYOD is not the missing code. No other month is
// asked, and cells without data are not kept.
//
// Rows and columns are counted from 1, months from 0, January of FYOD, to
// month_count() - 1, December of LYOD. Filled in three steps: every row is opened with
// its January of FYOD, the room for all months is laid out, and the other months are
// stored.
class GridValues {
 public:
  // For the cells of `ranges` that lie on the grid, in `YearCount` years.
  GridValues(const GridRanges& ranges, std::int32_t YearCount,
             std::int32_t MissingCode);

  // Finds the cells of the next row that have data, from the values of January of FYOD.
  // Called for every row of the ranges that lies on the grid, upward.
  void open_next_row(const RowValues& january);

  // Makes room for all months of the cells that have data.
  void lay_out();

  // Keeps one month (1 or later) of the cells of `row` that have data.
  void store_row(std::size_t month, std::int32_t row, const RowValues& row_values);

  // The columns of `row` whose cells have data, ascending. A row without any, or
  // outside the ranges, has none.
  [[nodiscard]] std::span<const std::int32_t> data_columns(std::int32_t row) const;

  // One month of the cells of `row` that have data, in the order of data_columns.
  [[nodiscard]] std::span<std::int16_t> month_of_row(std::size_t month,
                                                     std::int32_t row);
  [[nodiscard]] std::span<const std::int16_t> month_of_row(std::size_t month,
                                                           std::int32_t row) const;

  [[nodiscard]] std::size_t month_count() const { return month_count_; }

 private:
  [[nodiscard]] std::size_t row_index(std::int32_t row) const {
    return static_cast<std::size_t>(row - first_row_);
  }
  [[nodiscard]] std::size_t place_of_month(std::size_t month, std::int32_t row) const;

  std::int32_t first_row_;
  std::int32_t last_row_;
  std::size_t month_count_;
  std::int32_t MissingCode_;
  std::vector<std::int32_t> columns_;       // wanted and on the grid, ascending
  std::vector<std::int32_t> data_columns_;  // of all rows, row by row
  std::vector<std::size_t>
      row_begin_;                      // where a row's begin there; one more at the end
  std::vector<std::int16_t> january_;  // like data_columns_, until the layout

  // [row][month][cell]: stores while reading are contiguous, and a row is small enough
  // to be transposed into series in the second-level cache. Storing cell by cell
  // instead would scatter every month over the whole block.
  LargeBuffer values_;
};

// Transposes a row into the series of its cells: cell i of data_columns(row) gets
// series[i * month_count] up to series[(i + 1) * month_count - 1].
void transpose_row(const GridValues& values, std::int32_t row,
                   std::vector<std::int16_t>& series);

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_GRID_VALUES_H_
