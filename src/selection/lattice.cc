#include "selection/lattice.h"

namespace veldmark {
namespace {

// Appends first, first + step, ... up to last, without numbers below 1, which lie
// outside the grid. The counter has 64 bits so that a huge step cannot overflow.
void append_stride(std::vector<std::int32_t>& numbers, std::int32_t first,
                   std::int32_t last, std::int32_t step) {
  for (std::int64_t number = first; number <= last; number += step) {
    if (number >= 1) {
      numbers.push_back(static_cast<std::int32_t>(number));
    }
  }
}

// Returns `count` / n, rounded up if `count` is positive.
std::int64_t stride_count(std::int32_t count, std::int64_t n) {
  return (count - 1 + n) / n;
}

}  // namespace

std::int64_t estimate_cells(std::int32_t RowCount, std::int32_t ColCount,
                            std::int32_t ThinningFactor) {
  return stride_count(RowCount, ThinningFactor) *
         stride_count(ColCount, ThinningFactor);
}

float percentage_of_cells(std::int64_t EstimatedCells, std::int32_t CellCount) {
  return static_cast<float>(EstimatedCells) / static_cast<float>(CellCount) * 100.0F;
}

Lattice make_lattice(const GridRanges& ranges, std::int32_t ThinningFactor) {
  Lattice lattice;
  append_stride(lattice.rows, ranges.FirstRow, ranges.LastRow, ThinningFactor);
  for (const ColumnRange& columns : ranges.columns()) {
    append_stride(lattice.columns, columns.first, columns.last, ThinningFactor);
  }
  return lattice;
}

}  // namespace veldmark
