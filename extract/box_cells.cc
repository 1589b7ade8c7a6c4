#include "extract/box_cells.h"

#include <algorithm>

namespace veldmark::extract {
namespace {

GridRanges chosen_ranges(const Options& options, RowOrder order) {
  if (options.cell) {
    const Cell cell = cell_of(*options.cell, order);
    GridRanges ranges;
    ranges.FirstRow = ranges.LastRow = cell.GridY;
    ranges.FirstCol = ranges.LastCol = cell.GridX;
    return ranges;
  }
  return ranges_of(options.box.value_or(Box{}), order);
}

std::vector<Cell> all_cells(const BoxCells& box) {
  std::vector<Cell> cells;
  for (const std::int32_t row : box.rows_from_south) {
    for (const std::int32_t column : box.columns_from_west) {
      cells.push_back({.GridY = row, .GridX = column});
    }
  }
  return cells;
}

}  // namespace

BoxCells find_box_cells(const Options& options, RowOrder order) {
  BoxCells box;
  box.ranges = chosen_ranges(options, order);
  box.lattice = make_lattice(box.ranges, options.every);
  box.rows_from_south = box.lattice.rows;
  if (order == RowOrder::kNorthFirst) {
    std::reverse(box.rows_from_south.begin(), box.rows_from_south.end());
  }
  // Across the meridian the columns of the eastern hemisphere come first.
  box.columns_from_west = box.lattice.columns;
  if (box.ranges.CrossesDateLine) {
    const auto east =
        std::lower_bound(box.columns_from_west.begin(), box.columns_from_west.end(),
                         box.ranges.EastFirstCol);
    std::rotate(box.columns_from_west.begin(), east, box.columns_from_west.end());
  }
  box.cells = all_cells(box);
  return box;
}

}  // namespace veldmark::extract
