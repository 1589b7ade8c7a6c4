// What the user selects: a rectangle of the globe and a span of years.

#ifndef VELDMARK_SELECTION_SEARCH_REGION_H_
#define VELDMARK_SELECTION_SEARCH_REGION_H_

#include <cstdint>

#include "grid/grid_layout.h"

namespace veldmark {

// A rectangle in degrees, north and east positive. A minLon greater than maxLon means
// a rectangle across the 180 degree meridian.
struct SearchRegion {
  float maxLat;
  float minLat;
  float maxLon;
  float minLon;
};

// Must the minimum longitude lie in -180..180?
enum class MinLonTest { kInRange, kNone };

// The years to extract, both included; 1901 <= FYOD <= LYOD <= the last year of data.
struct YearSpan {
  std::int32_t FYOD;
  std::int32_t LYOD;

  // How many years and months the span has. Year index 1 is FYOD.
  [[nodiscard]] std::int32_t YearCount() const { return LYOD - FYOD + 1; }
  [[nodiscard]] std::int32_t MonthCount() const { return kMonthsPerYear * YearCount(); }

  // How many lines of a grid file lie before January of FYOD.
  [[nodiscard]] std::int32_t SkipLines() const {
    return (FYOD - kFirstDataYear) * kLinesPerYear;
  }
};

}  // namespace veldmark

#endif  // VELDMARK_SELECTION_SEARCH_REGION_H_
