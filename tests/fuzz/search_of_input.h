// Searches that the program's dialogues can lead to, made from fuzz bytes.

#ifndef VELDMARK_TESTS_FUZZ_SEARCH_OF_INPUT_H_
#define VELDMARK_TESTS_FUZZ_SEARCH_OF_INPUT_H_

#include <algorithm>
#include <cstdint>

#include "fuzz_input.h"
#include "selection/grid_geometry.h"
#include "selection/search_region.h"

namespace veldmark::fuzz {

// A multiple of an eighth of a degree from -limit to limit: bounds on centres, on edges
// and beside both.
inline float degrees_of(FuzzInput& input, int limit) {
  return static_cast<float>(input.between(-8 * limit, 8 * limit)) / 8;
}

// A box of at most `tallest` eighths of a degree anywhere, across the 180 degree
// meridian too. Most are at most five degrees wide: wide ones take time.
inline SearchRegion region_of(FuzzInput& input, int tallest) {
  constexpr int kWide = 224;
  SearchRegion region;
  region.minLat = degrees_of(input, 90);
  const float height = static_cast<float>(input.byte() % (tallest + 1)) / 8;
  region.maxLat = std::min(region.minLat + height, 90.0F);
  region.minLon = degrees_of(input, 180);
  const int width = input.byte();
  if (width >= kWide) {
    region.maxLon = degrees_of(input, 180);
  } else {
    region.maxLon = region.minLon + static_cast<float>(width % 41) / 8;
    if (region.maxLon > 180) region.maxLon -= 360;
  }
  return region;
}

// The ranges of a search, of the first of a run or of one after another.
inline GridRanges ranges_of(FuzzInput& input, int tallest) {
  const std::uint8_t kind = input.byte();
  const RowOrder order = kind % 4 == 3 ? RowOrder::kNorthFirst : RowOrder::kSouthFirst;
  GridRanges previous;
  if (kind / 4 % 4 == 3) {
    previous = find_ranges(region_of(input, tallest), order, previous);
  }
  return find_ranges(region_of(input, tallest), order, previous);
}

}  // namespace veldmark::fuzz

#endif  // VELDMARK_TESTS_FUZZ_SEARCH_OF_INPUT_H_
