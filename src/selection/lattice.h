// Thinning: keeping every n-th row and column of a search's cells.

#ifndef VELDMARK_SELECTION_LATTICE_H_
#define VELDMARK_SELECTION_LATTICE_H_

#include <cstdint>
#include <vector>

#include "selection/grid_geometry.h"

namespace veldmark {

// Estimates how many cells of `RowCount` x `ColCount` a factor n >= 1 keeps: quotients
// (RowCount - 1 + n) / n and (ColCount - 1 + n) / n, without remainder, multiplied.
// With positive counts that is the number of every n-th row and column. Each piece of
// a box across the 180 degree meridian is strided on its own, so the cells kept there
// can be some more.
// Kept on purpose: Estimate.OfNegativeRowCountsIsNegative.
std::int64_t estimate_cells(std::int32_t RowCount, std::int32_t ColCount,
                            std::int32_t ThinningFactor);

// Returns the estimate as a percentage of `CellCount`, in single precision; NaN for 0
// of 0.
float percentage_of_cells(std::int64_t EstimatedCells, std::int32_t CellCount);

// The cells that a factor keeps: every row of `rows` (GridY) with every column of
// `columns` (GridX), each in the order in which cells are visited. Both are counted
// from 1; rows and columns outside the grid take part in the striding and are left out.
struct Lattice {
  std::vector<std::int32_t> rows;
  std::vector<std::int32_t> columns;
};

// Returns the lattice of `ranges`: every n-th row from FirstRow, and every n-th column
// of each column range from its first.
Lattice kept_cells(const GridRanges& ranges, std::int32_t ThinningFactor);

}  // namespace veldmark

#endif  // VELDMARK_SELECTION_LATTICE_H_
