// The cells of a box or of the globe, or the cell that contains a point.

#ifndef VELDMARK_EXTRACT_BOX_CELLS_H_
#define VELDMARK_EXTRACT_BOX_CELLS_H_

#include <cstdint>
#include <vector>

#include "extract/options.h"
#include "selection/lattice.h"

namespace veldmark::extract {

struct BoxCells {
  GridRanges ranges;  // before thinning
  Lattice lattice;    // in the order of the file

  // Rows south to north and columns west to east, across the 180 degree meridian too.
  std::vector<std::int32_t> rows_from_south;
  std::vector<std::int32_t> columns_from_west;

  std::vector<Cell> cells;  // rows south to north, in each row columns west to east
};

// Returns the cells that the options request.
BoxCells find_box_cells(const Options& options, RowOrder order);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_BOX_CELLS_H_
