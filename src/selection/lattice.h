// Thinning: only every n-th row and column of a search is saved.

#ifndef VELDMARK_SELECTION_LATTICE_H_
#define VELDMARK_SELECTION_LATTICE_H_

#include <cstdint>
#include <vector>

#include "selection/grid_geometry.h"

namespace veldmark {

// Estimates how many of `RowCount` x `ColCount` cells are left after thinning by n >=
// 1: the integer quotients (RowCount - 1 + n) / n and (ColCount - 1 + n) / n,
// multiplied. For positive counts that is every n-th row and column. The two column
// ranges of a box across the 180 degree meridian are thinned separately, so a few more
// cells can be left. Kept on purpose: Estimate.OfNegativeRowCountsIsNegative.
std::int64_t estimate_cells(std::int32_t RowCount, std::int32_t ColCount,
                            std::int32_t ThinningFactor);

// Returns the estimate as a percentage of `CellCount`, in single precision; NaN if both
// are 0.
float percentage_of_cells(std::int64_t EstimatedCells, std::int32_t CellCount);

// The cells that thinning leaves: every column of `columns` (GridX) in every row of
// `rows` (GridY), in the order in which they are saved. Both are counted from 1.
struct Lattice {
  std::vector<std::int32_t> rows;
  std::vector<std::int32_t> columns;
};

// Returns the lattice of `ranges`: every n-th row, counted from FirstRow, and every
// n-th column of each column range, counted from its first. Ranges may start outside
// the grid; those rows and columns count for the stride but are left out.
Lattice make_lattice(const GridRanges& ranges, std::int32_t ThinningFactor);

}  // namespace veldmark

#endif  // VELDMARK_SELECTION_LATTICE_H_
