// Thinning: keeping every n-th row and column of a search's cells.

#ifndef VELDMARK_SELECTION_THINNING_H_
#define VELDMARK_SELECTION_THINNING_H_

#include <cstdint>
#include <vector>

#include "console/console_dialogue.h"
#include "selection/grid_geometry.h"

namespace veldmark {

// Estimates how many cells of `RowCount` x `ColCount` a factor n >= 1 keeps: quotients
// (RowCount - 1 + n) / n and (ColCount - 1 + n) / n, without remainder, multiplied.
// With positive counts that is the number of every n-th row and column. Each piece of
// a box across the 180 degree meridian is strided on its own, so the cells kept there
// can be some more.
// Kept on purpose: negative row counts give negative estimates.
std::int64_t estimate_cells(std::int32_t RowCount, std::int32_t ColCount,
                            std::int32_t ThinningFactor);

// The estimate as a percentage of `CellCount`, in single precision; NaN for 0 of 0.
float percentage_of_cells(std::int64_t EstimatedCells, std::int32_t CellCount);

// Asks for the thinning factor until the user accepts its estimate.
// Result: 1 or more; a smaller answer ends the run (RunEnd).
// Kept on purpose: the range that the texts suggest is advice and isn't checked; any
// answer that doesn't start with n or N accepts.
std::int32_t ask_thinning_factor(ConsoleDialogue& console, const GridRanges& ranges);

// The cells that a factor keeps: every row of `rows` with every column of `columns`,
// each in the order in which cells are visited. Rows and columns are 1-based; places
// outside the grid take part in the counting and are left out.
struct Lattice {
  std::vector<std::int32_t> rows;
  std::vector<std::int32_t> columns;
};

// The lattice of `ranges`: every n-th row from FirstRow, every n-th column from
// FirstCol and then, in two pieces, every n-th column from EastFirstCol.
Lattice kept_cells(const GridRanges& ranges, std::int32_t ThinningFactor);

}  // namespace veldmark

#endif  // VELDMARK_SELECTION_THINNING_H_
