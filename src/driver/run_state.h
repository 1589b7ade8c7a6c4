// What a run remembers from one search to the next.

#ifndef VELDMARK_DRIVER_RUN_STATE_H_
#define VELDMARK_DRIVER_RUN_STATE_H_

#include <cstdint>

#include "catalogue/variable_catalogue.h"
#include "output/output_names.h"
#include "selection/grid_geometry.h"
#include "selection/search_region.h"

namespace veldmark {

struct RunState {
  // Ask for region and years in the next search? At first, and then as the user wishes.
  bool ChangeSearch = true;
  bool AnotherSearch = true;

  std::int32_t MenuChoice{};   // the last answer to the menu, -9..99
  std::int32_t MissingCode{};  // of the data set that was cited last
  std::int32_t LastDataYear{};
  VariableEntry entry;  // blank until a variable is chosen
  bool FileExists = false;

  OutputName TsfName;
  OutputName XyName;

  // The factor that turns stored values into sample values of the variance test.
  // Kept on purpose: variance-frost-days-then-another. It is 0 until frost days are
  // chosen, and keeps their value then.
  float SampleScale = 0;
  bool FtestChosen = false;

  SearchRegion region{};
  YearSpan years{};
  GridRanges ranges;  // the last search's; the next one inherits from them
};

}  // namespace veldmark

#endif  // VELDMARK_DRIVER_RUN_STATE_H_
