// From a region in degrees to rows and columns of the 0.5-degree grid.
//
//   GridX   column, 1..720, west to east
//   GridY   row, 1..360, in file order: row 1 is the southernmost row of the CRU TS
//           files and the northernmost row of the scPDSI file
//
// All centres are multiples of 0.25 and exact as 32-bit reals, so a bound that lies on
// a centre compares equal to it.
// Nothing here reads, writes or remembers anything: what a search inherits from the
// one before it in the same run is handed in.

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
  // By repeated addition: `first`, `first` + `step`, ...
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

  // All centres; index 0 holds number 1.
  [[nodiscard]] constexpr const std::array<float, kCount>& all() const {
    return centres_;
  }

 private:
  std::array<float, kCount> centres_{};
};

// Centre longitude of each column (GridX), degrees east.
inline constexpr CentreTable<kGridColumns> CellLon(kWesternmostCentre, kCellSize);

// Centre latitude of each row (GridY) of a file in `order`, degrees north.
const CentreTable<kGridRows>& CellLat(RowOrder order);

// Rows FirstRow..LastRow, both included; empty when LastRow < FirstRow.
struct RowRange {
  std::int32_t FirstRow = 0;
  std::int32_t LastRow = 0;
};

// Finds the rows of `region`; minLat <= maxLat, -90..90.
//
//   south-first file   rows with minLat < centre <= maxLat; a minLat of -89.75 or
//                      less takes row 1 as well, one of 89.75 row 360
//   north-first file   from the lowest centre above maxLat to the highest centre at
//                      or below minLat: one row more at either end
//
// Kept on purpose: FindRows.MinimumOnACentreLeavesThatRowOut. A minLat on a centre
// (10.25) leaves that row out, a maxLat on a centre takes it in. Kept on purpose:
// FindRows.BoundsBeyondTheLastCentreMatchNoRow. In a south-first file a minLat
// above 89.75 gives FirstRow 0 and a maxLat below -89.75 LastRow 0. Kept on purpose:
// FindRows.NorthFirstPolesCorrectTheOtherEnd. A north-first region that touches a pole
// gets FirstRow 360 or LastRow 1 there: its row count can be negative. An empty range
// is a result like any other.
RowRange find_rows(const SearchRegion& region, RowOrder order);

// Columns first..last, both included; empty when last < first.
struct ColumnRange {
  std::int32_t first = 1;
  std::int32_t last = 0;

  [[nodiscard]] std::int32_t count() const { return last - first + 1; }
  [[nodiscard]] bool contains(std::int32_t GridX) const {
    return first <= GridX && GridX <= last;
  }
};

// The rows and columns of a search, in the order in which cells are visited: rows
// upward, in each row the columns FirstCol..LastCol and then, when CrossesDateLine is
// set, the columns EastFirstCol..EastLastCol. Ranges can be empty, can overlap (the
// flag outlives the box that set it) and can start at 0, which is outside the grid.
struct GridRanges {
  std::int32_t FirstRow{};
  std::int32_t LastRow{};
  std::int32_t FirstCol = 0;
  std::int32_t LastCol = 0;
  std::int32_t EastFirstCol = 0;
  std::int32_t EastLastCol = 0;
  bool CrossesDateLine = false;

  // The one or two ranges of columns in the order in which cells are visited. Without
  // an east piece the second is empty.
  [[nodiscard]] std::array<ColumnRange, 2> columns() const {
    const ColumnRange east{EastFirstCol, EastLastCol};
    return {{{FirstCol, LastCol}, CrossesDateLine ? east : ColumnRange{}}};
  }

  [[nodiscard]] std::int32_t RowCount() const { return LastRow - FirstRow + 1; }
  [[nodiscard]] std::int32_t ColCount1() const { return columns()[0].count(); }
  // Columns of the east piece, 0 where there is none.
  [[nodiscard]] std::int32_t ColCount2() const { return columns()[1].count(); }
  [[nodiscard]] std::int32_t ColCount() const { return ColCount1() + ColCount2(); }
  // The theoretical number of cells; can be zero or negative.
  [[nodiscard]] std::int32_t CellCount() const { return RowCount() * ColCount(); }
};

// Finds the rows and columns of `region` in a file in `order`.
//
//   previous   the ranges of the search before this one in the same run; a fresh
//              GridRanges for the first
//
// Columns follow the rule of south-first rows. A box across the 180 degree meridian
// (minLon > maxLon) has a west piece 1..LastCol and an east piece EastFirstCol..720.
//
// Kept on purpose: FindRanges.OnceAcrossTheMeridianLaterBoxesStayInTwoPieces.
// Kept on purpose: FindRanges.ColumnsThatMatchNothingAreKept. FirstCol and LastCol have
// the previous search's value where a bound matches no column (a longitude beyond
// 179.75 on the side where no end correction is made); the other bounds are 0 then.
GridRanges find_ranges(const SearchRegion& region, RowOrder order,
                       const GridRanges& previous);

}  // namespace veldmark

#endif  // VELDMARK_SELECTION_GRID_GEOMETRY_H_
