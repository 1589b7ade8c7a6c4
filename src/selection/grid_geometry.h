// Converts a region in degrees to rows and columns of the 0.5-degree grid.
//
//   GridX   column, 1..720, west to east
//   GridY   row, 1..360, in file order: row 1 is the southernmost row of the CRU TS
//           files and the northernmost row of the scPDSI file
//
// All centres are multiples of 0.25 and so exact in 32 bits: a bound on a centre
// compares equal to it.
//
// All functions are pure: what a search inherits from the one before it in the same run
// is an argument.

#ifndef VELDMARK_SELECTION_GRID_GEOMETRY_H_
#define VELDMARK_SELECTION_GRID_GEOMETRY_H_

#include <array>
#include <cstddef>
#include <cstdint>

#include "grid/grid_layout.h"
#include "selection/search_region.h"

namespace veldmark {

// The centres of the cells along one axis of the grid, in degrees, counted from 1.
template <std::size_t kCount>
class CentreTable {
 public:
  // The centres `first`, `first` + `step`, `first` + 2 * `step`, ...
  constexpr CentreTable(float first, float step) {
    centres_[0] = first;
    for (std::size_t i = 1; i < kCount; ++i) {
      centres_[i] = centres_[i - 1] + step;
    }
  }

  // Requires 1 <= index <= kCount.
  constexpr float operator[](std::int32_t index) const {
    return centres_[static_cast<std::size_t>(index - 1)];
  }

  // Returns all centres; here index 0 holds centre 1.
  [[nodiscard]] constexpr const std::array<float, kCount>& all() const {
    return centres_;
  }

 private:
  std::array<float, kCount> centres_{};
};

// The centre longitude of each column (GridX), in degrees east.
inline constexpr CentreTable<kGridColumns> CellLon(kWesternmostCentre, kCellSize);

// Returns the centre latitudes of the rows (GridY) of a file in `order`, in degrees
// north.
const CentreTable<kGridRows>& CellLat(RowOrder order);

// The rows FirstRow..LastRow, both included; empty if LastRow < FirstRow.
struct RowRange {
  std::int32_t FirstRow{};
  std::int32_t LastRow{};
};

// Returns the rows of `region`. Requires -90 <= minLat <= maxLat <= 90.
//
//   south-first file   the rows with minLat < centre <= maxLat; row 1 as well if minLat
//                      is -89.75 or less, row 360 as well if minLat is 89.75
//   north-first file   from the lowest centre above maxLat to the highest centre at or
//                      below minLat: one more row at each end
//
// The range can be empty.
//
// Kept on purpose: FindRows.MinimumOnACentreLeavesThatRowOut. A minLat on a centre
// (10.25) excludes that row, a maxLat on a centre includes it.
//
// Kept on purpose: FindRows.BoundsBeyondTheLastCentreMatchNoRow. In a south-first file
// FirstRow is 0 for a minLat above 89.75, and LastRow is 0 for a maxLat below -89.75.
//
// Kept on purpose: FindRows.NorthFirstPolesCorrectTheOtherEnd. A north-first region
// that touches a pole gets FirstRow 360 (south) or LastRow 1 (north), so that its row
// count can be negative.
RowRange find_rows(const SearchRegion& region, RowOrder order);

// The columns first..last, both included; empty if last < first.
struct ColumnRange {
  std::int32_t first = 1;
  std::int32_t last = 0;

  [[nodiscard]] std::int32_t count() const { return last - first + 1; }
  [[nodiscard]] bool contains(std::int32_t GridX) const {
    return first <= GridX && GridX <= last;
  }
};

// The rows and columns of a search, in the order in which cells are saved: rows
// ascending, in each row the columns FirstCol..LastCol and then, if CrossesDateLine is
// set, EastFirstCol..EastLastCol. The column ranges can overlap, because the flag stays
// set for later boxes. Ranges can be empty and can start at 0, outside the grid.
struct GridRanges {
  std::int32_t FirstRow{};
  std::int32_t LastRow{};
  std::int32_t FirstCol = 0;
  std::int32_t LastCol = 0;
  std::int32_t EastFirstCol = 0;
  std::int32_t EastLastCol = 0;
  bool CrossesDateLine = false;

  // Returns the column ranges in the order in which cells are saved. The second is
  // empty unless CrossesDateLine is set.
  [[nodiscard]] std::array<ColumnRange, 2> columns() const {
    const ColumnRange east{EastFirstCol, EastLastCol};
    return {{{FirstCol, LastCol}, CrossesDateLine ? east : ColumnRange{}}};
  }

  [[nodiscard]] std::int32_t RowCount() const { return LastRow - FirstRow + 1; }
  [[nodiscard]] std::int32_t ColCount1() const { return columns()[0].count(); }
  // The number of columns in the east range; 0 if there is none.
  [[nodiscard]] std::int32_t ColCount2() const { return columns()[1].count(); }
  [[nodiscard]] std::int32_t ColCount() const { return ColCount1() + ColCount2(); }
  // The number of cells, sea included; can be zero or negative.
  [[nodiscard]] std::int32_t CellCount() const { return RowCount() * ColCount(); }
};

// Returns the rows and columns of `region` in a file in `order`.
//
//   previous   the ranges of the previous search of the run; GridRanges{} for the first
//
// Columns follow the same rule as the rows of a south-first file. A box across the 180
// degree meridian (minLon > maxLon) has a west range 1..LastCol and an east range
// EastFirstCol..720.
//
// Kept on purpose: FindRanges.OnceAcrossTheMeridianLaterBoxesStayInTwoRanges.
//
// Kept on purpose: FindRanges.BoundsThatMatchNoColumnLeaveThePreviousOnes. FirstCol and
// LastCol keep the value of the previous search if a bound matches no column: a
// longitude beyond the last centre on the side that is not corrected. EastFirstCol is 0
// then.
GridRanges find_ranges(const SearchRegion& region, RowOrder order,
                       const GridRanges& previous);

}  // namespace veldmark

#endif  // VELDMARK_SELECTION_GRID_GEOMETRY_H_
