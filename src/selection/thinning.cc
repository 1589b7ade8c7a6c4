#include "selection/thinning.h"

#include <algorithm>
#include <string>

#include "util/fixed_field.h"

namespace veldmark {
namespace {

constexpr int kMargin = 1;

std::string percentage_line(std::int64_t EstimatedCells, std::int32_t CellCount) {
  return "or " + fixed_real(percentage_of_cells(EstimatedCells, CellCount), 7, 3) + "%";
}

void explain_thinning(ConsoleDialogue& console, const GridRanges& ranges) {
  const std::int32_t CellCount = ranges.CellCount();
  const std::int32_t ThinningLimit = std::min(ranges.ColCount(), ranges.RowCount());
  // Of no rows or columns every second one is none.
  const std::int64_t EstimatedCells =
      estimate_cells(std::max(ranges.RowCount(), 0), std::max(ranges.ColCount(), 0), 2);
  console.blank_line();
  console.write_line(kMargin, "There are theoretically " + fixed_integer(CellCount, 6) +
                                  " grid cells within your");
  console.write_line(kMargin,
                     "search region, this includes cells over oceans for which ");
  console.write_line(
      kMargin, "data are not available. You can choose now to reduce the number ");
  console.write_line(kMargin,
                     "of grid cells saved by entering here an integer between the");
  console.write_line(kMargin, "values of 2 and " + fixed_integer(ThinningLimit, 4));
  console.blank_line();
  console.write_line(kMargin, "For example: Entering a value of 2 would reduce ");
  console.write_line(kMargin, "the number of cells saved to roughtly " +
                                  fixed_integer(EstimatedCells, 8));
  console.write_line(kMargin, percentage_line(EstimatedCells, CellCount));
}

std::int32_t ask_factor_once(ConsoleDialogue& console, const GridRanges& ranges) {
  console.blank_line();
  console.write_line(
      kMargin,
      "Enter [1] to save all " + fixed_integer(ranges.CellCount(), 6) + " grid cells.");
  console.prompt(kMargin, "Enter a value greater than 1 to save less ==> ");
  const std::int32_t ThinningFactor = console.read_free_integer();
  if (ThinningFactor < 1) {
    throw RunEnd::error("Thinning factor must be 1 or more", Operation::kRead,
                        Channel::kConsole);
  }
  return ThinningFactor;
}

bool confirm_factor(ConsoleDialogue& console, const GridRanges& ranges,
                    std::int32_t ThinningFactor) {
  const std::int64_t EstimatedCells =
      estimate_cells(ranges.RowCount(), ranges.ColCount(), ThinningFactor);
  console.write_line(kMargin, "The number of cells saved will be roughtly " +
                                  fixed_integer(EstimatedCells, 8));
  console.write_line(kMargin, percentage_line(EstimatedCells, ranges.CellCount()));
  console.blank_line();
  console.prompt(kMargin, "IS this ok? [y]es or [n]o ==> ");
  const char ThinningOk = console.read_free_character();
  return ThinningOk != 'n' && ThinningOk != 'N';
}

// Appends first, first + step, ... up to last, as far as inside the grid. The counter
// has 64 bits: a step near the largest 32-bit integer must not wrap around.
void append_stride(std::vector<std::int32_t>& places, std::int32_t first,
                   std::int32_t last, std::int32_t step) {
  for (std::int64_t place = first; place <= last; place += step) {
    if (place >= 1) {
      places.push_back(static_cast<std::int32_t>(place));
    }
  }
}

}  // namespace

std::int64_t estimate_cells(std::int32_t RowCount, std::int32_t ColCount,
                            std::int32_t ThinningFactor) {
  const std::int64_t n = ThinningFactor;
  const std::int64_t rows_kept = (RowCount - 1 + n) / n;
  const std::int64_t columns_kept = (ColCount + n - 1) / n;
  return rows_kept * columns_kept;
}

float percentage_of_cells(std::int64_t EstimatedCells, std::int32_t CellCount) {
  return static_cast<float>(EstimatedCells) / static_cast<float>(CellCount) * 100.0F;
}

std::int32_t ask_thinning_factor(ConsoleDialogue& console, const GridRanges& ranges) {
  explain_thinning(console, ranges);
  for (;;) {
    const std::int32_t ThinningFactor = ask_factor_once(console, ranges);
    if (confirm_factor(console, ranges, ThinningFactor)) {
      return ThinningFactor;
    }
  }
}

Lattice kept_cells(const GridRanges& ranges, std::int32_t ThinningFactor) {
  Lattice lattice;
  append_stride(lattice.rows, ranges.FirstRow, ranges.LastRow, ThinningFactor);
  append_stride(lattice.columns, ranges.FirstCol, ranges.LastCol, ThinningFactor);
  if (ranges.CrossesDateLine) {
    append_stride(lattice.columns, ranges.EastFirstCol, ranges.EastLastCol,
                  ThinningFactor);
  }
  return lattice;
}

}  // namespace veldmark
