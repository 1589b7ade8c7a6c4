#include "selection/thinning_dialogue.h"

#include <algorithm>
#include <string>

#include "selection/lattice.h"
#include "util/fixed_field.h"

namespace veldmark {
namespace {

std::string percentage_line(std::int64_t EstimatedCells, std::int32_t CellCount) {
  return " or " + fixed_real(percentage_of_cells(EstimatedCells, CellCount), 7, 3) +
         "%";
}

void explain_thinning(ConsoleDialogue& console, const GridRanges& ranges) {
  const std::int32_t CellCount = ranges.CellCount();
  const std::int32_t ThinningLimit = std::min(ranges.ColCount(), ranges.RowCount());
  // Clamped at 0: the example must not show a negative number.
  const std::int64_t EstimatedCells =
      estimate_cells(std::max(ranges.RowCount(), 0), std::max(ranges.ColCount(), 0), 2);
  console.write_lines({
      "",
      " There are theoretically " + fixed_integer(CellCount, 6) +
          " grid cells within your",
      " search region, this includes cells over oceans for which ",
      " data are not available. You can choose now to reduce the number ",
      " of grid cells saved by entering here an integer between the",
      " values of 2 and " + fixed_integer(ThinningLimit, 4),
      "",
      " For example: Entering a value of 2 would reduce ",
      " the number of cells saved to roughtly " + fixed_integer(EstimatedCells, 8),
      percentage_line(EstimatedCells, CellCount),
  });
}

std::int32_t ask_factor_once(ConsoleDialogue& console, const GridRanges& ranges) {
  console.write_lines({"", " Enter [1] to save all " +
                               fixed_integer(ranges.CellCount(), 6) + " grid cells."});
  console.prompt(" Enter a value greater than 1 to save less ==> ");
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
  console.write_lines({" The number of cells saved will be roughtly " +
                           fixed_integer(EstimatedCells, 8),
                       percentage_line(EstimatedCells, ranges.CellCount()), ""});
  console.prompt(" IS this ok? [y]es or [n]o ==> ");
  const char ThinningOk = console.read_free_character();
  return ThinningOk != 'n' && ThinningOk != 'N';
}

}  // namespace

std::int32_t ask_thinning_factor(ConsoleDialogue& console, const GridRanges& ranges) {
  explain_thinning(console, ranges);
  for (;;) {
    const std::int32_t ThinningFactor = ask_factor_once(console, ranges);
    if (confirm_factor(console, ranges, ThinningFactor)) {
      return ThinningFactor;
    }
  }
}

}  // namespace veldmark
