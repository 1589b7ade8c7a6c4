// What the user selects: a rectangle of the globe and a span of years.

#ifndef VELDMARK_SELECTION_SEARCH_REGION_H_
#define VELDMARK_SELECTION_SEARCH_REGION_H_

#include <cstdint>

#include "grid/grid_layout.h"

namespace veldmark {

// A rectangle in degrees, north and east positive. It crosses the 180 degree meridian
// if minLon > maxLon.
struct SearchRegion {
  float maxLat;
  float minLat;
  float maxLon;
  float minLon;
};

// Whether the minimum longitude must lie in -180..180.
enum class MinLonTest { kInRange, kNone };

// The years to extract: FYOD..LYOD, both included. 1901 <= FYOD <= LYOD <= the last
// year of the data.
struct YearSpan {
  std::int32_t FYOD;
  std::int32_t LYOD;

  // The number of years and of months in the span.
  [[nodiscard]] std::int32_t YearCount() const { return LYOD - FYOD + 1; }
  [[nodiscard]] std::int32_t MonthCount() const { return kMonthsPerYear * YearCount(); }

  // The number of lines in a grid file before January of FYOD.
  [[nodiscard]] std::int32_t SkipLines() const {
    return (FYOD - kFirstDataYear) * kLinesPerYear;
  }
};

}  // namespace veldmark

#endif  // VELDMARK_SELECTION_SEARCH_REGION_H_
