// Extraction of a box, of the globe, or of the cell that holds a point.

#ifndef VELDMARK_EXTRACT_BOX_JOB_H_
#define VELDMARK_EXTRACT_BOX_JOB_H_

#include <cstddef>
#include <string>
#include <vector>

#include "extract/job.h"
#include "selection/lattice.h"

namespace veldmark::extract {

// The cells of a box.
struct BoxCells {
  GridRanges ranges;  // before thinning
  Lattice lattice;    // in the order of the file

  // Rows south to north and columns west to east, across the 180 degree meridian too.
  std::vector<std::int32_t> rows_from_south;
  std::vector<std::int32_t> columns_from_west;
};

// Returns the cells that the options ask for.
BoxCells find_box_cells(const Options& options, RowOrder order);

// Extracts them and writes the output.
// Returns the summary. Throws NothingFound when no cell has data, and Failure.
std::string extract_box(const Job& job);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_BOX_JOB_H_
