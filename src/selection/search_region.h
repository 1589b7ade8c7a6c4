// What the user selects: a rectangle of the globe and a span of years.

#ifndef VELDMARK_SELECTION_SEARCH_REGION_H_
#define VELDMARK_SELECTION_SEARCH_REGION_H_

#include <cstdint>

namespace veldmark {

// A rectangle in degrees, north and east positive. A minLon greater than maxLon means
// a rectangle across the 180 degree meridian.
struct SearchRegion {
  float maxLat;
  float minLat;
  float maxLon;
  float minLon;
};

constexpr std::int32_t kFirstDataYear = 1901;
constexpr std::int32_t kLastDataYear = 2016;

constexpr std::int32_t kMonthsPerYear = 12;
constexpr std::int32_t kGridRows = 360;
constexpr std::int32_t kLinesPerYear = kMonthsPerYear * kGridRows;

// The years to extract, both included; 1901 <= FYOD <= LYOD <= 2016.
struct YearSpan {
  std::int32_t FYOD;
  std::int32_t LYOD;

  // How many years the span has. Year index 1 is FYOD.
  [[nodiscard]] std::int32_t YearCount() const { return LYOD - FYOD + 1; }

  // How many lines of a grid file lie before January of FYOD, at 360 lines a month.
  [[nodiscard]] std::int32_t SkipLines() const {
    return (FYOD - kFirstDataYear) * kLinesPerYear;
  }
};

}  // namespace veldmark

#endif  // VELDMARK_SELECTION_SEARCH_REGION_H_
