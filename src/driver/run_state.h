// What a run remembers from one pass to the next.

#ifndef VELDMARK_DRIVER_RUN_STATE_H_
#define VELDMARK_DRIVER_RUN_STATE_H_

#include <cstdint>
#include <string>

#include "catalogue/variable_catalogue.h"
#include "selection/grid_geometry.h"
#include "selection/search_region.h"

namespace veldmark {

struct RunState {
  // Ask for region and years in the next pass? At first, and then as the user wishes.
  bool ChangeSearch = true;

  std::int32_t MenuChoice{};  // the last answer to the menu, -9..99
  VariableEntry entry;        // blank until a variable is chosen
  std::int32_t MissingCode{};
  std::int32_t LastDataYear{};

  // The factor that turns stored values into sample values of the variance test.
  // Kept on purpose: it is 0 until frost days are chosen, and keeps their value then.
  float SampleScale = 0;

  std::string TsfName;  // 65 characters, blanks at the end
  std::string XyName;

  SearchRegion region{};
  YearSpan years{};
  GridRanges ranges;  // the last search's; the next one inherits from them
};

}  // namespace veldmark

#endif  // VELDMARK_DRIVER_RUN_STATE_H_
