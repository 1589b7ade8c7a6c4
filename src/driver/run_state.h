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
  // Whether the next search asks for region and years: true for the first search, then
  // what the user answered.
  bool ChangeSearch = true;
  bool AnotherSearch = true;

  std::int32_t MenuChoice{};   // the last answer to the menu, -9..99
  std::int32_t MissingCode{};  // of the data set whose citation was shown last
  std::int32_t LastDataYear{};
  VariableEntry entry;  // of the last variable chosen; blank before

  OutputName TsfName;
  OutputName XyName;

  // The factor from stored units to sample units in the variance test.
  //
  // Kept on purpose: variance-frost-days-then-another. It is 0 until frost days are
  // chosen; after that it keeps their factor for all variables.
  float SampleScale = 0;
  bool FtestChosen{};  // for this search

  SearchRegion region{};
  YearSpan years{};
  GridRanges ranges;  // of the last search; find_ranges needs them for the next
};

}  // namespace veldmark

#endif  // VELDMARK_DRIVER_RUN_STATE_H_
