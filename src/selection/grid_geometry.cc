#include "selection/grid_geometry.h"

#include <algorithm>
#include <optional>

namespace veldmark {
namespace {

constexpr CentreTable<kGridRows> kSouthFirstLat(kSouthernmostCentre, kCellSize);
constexpr CentreTable<kGridRows> kNorthFirstLat(-kSouthernmostCentre, -kCellSize);

static_assert(CellLon[kGridColumns] == 179.75F);
static_assert(kSouthFirstLat[kGridRows] == 89.75F);
static_assert(kNorthFirstLat[kGridRows] == -89.75F);

constexpr float kSouthernmost = kSouthFirstLat[1];
constexpr float kNorthernmost = kNorthFirstLat[1];
constexpr float kWesternmost = CellLon[1];
constexpr float kEasternmost = CellLon[kGridColumns];

// Interval i lies between the neighbouring centres i and i + 1. Returns the interval
// that holds `bound`: a bound on a centre belongs to the interval above it, a bound on
// the last centre to the last interval. Returns nullopt outside the outermost centres.
template <std::size_t kCount>
std::optional<std::int32_t> interval_of(const CentreTable<kCount>& ascending,
                                        float bound) {
  const auto& centres = ascending.all();
  if (!(centres.front() <= bound && bound <= centres.back())) {
    return std::nullopt;
  }
  const auto above = std::upper_bound(centres.begin(), centres.end(), bound);
  const auto count = static_cast<std::int32_t>(above - centres.begin());
  return std::min(count, static_cast<std::int32_t>(kCount) - 1);
}

// Returns the same for centres from north to south, but a bound on a centre belongs to
// the interval north of it, so a bound on the northernmost centre belongs to none.
std::optional<std::int32_t> interval_from_north(float bound) {
  const auto& centres = kNorthFirstLat.all();
  const auto* const below = std::partition_point(
      centres.begin(), centres.end(), [&](float lat) { return lat > bound; });
  if (below == centres.begin() || below == centres.end()) {
    return std::nullopt;
  }
  return static_cast<std::int32_t>(below - centres.begin());
}

// Returns the number of the centre that ends `interval`; 0 for none.
std::int32_t index_after(std::optional<std::int32_t> interval) {
  return interval ? *interval + 1 : 0;
}

RowRange find_rows_south_first(const SearchRegion& region) {
  RowRange rows;
  rows.FirstRow = index_after(interval_of(kSouthFirstLat, region.minLat));
  rows.LastRow = interval_of(kSouthFirstLat, region.maxLat).value_or(0);
  if (region.minLat <= kSouthernmost) {
    rows.FirstRow = 1;
  }
  if (region.maxLat >= kNorthernmost) {
    rows.LastRow = kGridRows;
  }
  return rows;
}

RowRange find_rows_north_first(const SearchRegion& region) {
  RowRange rows;
  rows.FirstRow = interval_from_north(region.maxLat).value_or(0);
  rows.LastRow = index_after(interval_from_north(region.minLat));
  // Kept on purpose: FindRows.NorthFirstPolesCorrectTheOtherEnd.
  if (region.minLat <= kSouthernmost) {
    rows.FirstRow = kGridRows;
  }
  if (region.maxLat >= kNorthernmost) {
    rows.LastRow = 1;
  }
  return rows;
}

// Sets FirstCol and LastCol. Where a bound lies in no interval they keep their values.
void find_columns(const SearchRegion& region, GridRanges& ranges) {
  if (const auto interval = interval_of(CellLon, region.minLon)) {
    ranges.FirstCol = *interval + 1;
  }
  if (const auto interval = interval_of(CellLon, region.maxLon)) {
    ranges.LastCol = *interval;
  }
  if (region.minLon <= kWesternmost) {
    ranges.FirstCol = 1;
  }
  if (region.maxLon >= kEasternmost) {
    ranges.LastCol = kGridColumns;
  }
}

// Sets a west and an east range. LastCol keeps its value where maxLon lies in no
// interval. Bounds beyond the outermost centres are not corrected here.
void find_columns_across_date_line(const SearchRegion& region, GridRanges& ranges) {
  ranges.FirstCol = 1;
  ranges.LastCol = interval_of(CellLon, region.maxLon).value_or(ranges.LastCol);
  ranges.EastFirstCol = index_after(interval_of(CellLon, region.minLon));
  ranges.EastLastCol = kGridColumns;
}

}  // namespace

const CentreTable<kGridRows>& CellLat(RowOrder order) {
  return order == RowOrder::kSouthFirst ? kSouthFirstLat : kNorthFirstLat;
}

RowRange find_rows(const SearchRegion& region, RowOrder order) {
  return order == RowOrder::kSouthFirst ? find_rows_south_first(region)
                                        : find_rows_north_first(region);
}

GridRanges find_ranges(const SearchRegion& region, RowOrder order,
                       const GridRanges& previous) {
  GridRanges ranges;
  const RowRange rows = find_rows(region, order);
  ranges.FirstRow = rows.FirstRow;
  ranges.LastRow = rows.LastRow;
  ranges.FirstCol = previous.FirstCol;
  ranges.LastCol = previous.LastCol;
  ranges.CrossesDateLine = previous.CrossesDateLine || region.minLon > region.maxLon;
  if (ranges.CrossesDateLine) {
    find_columns_across_date_line(region, ranges);
  } else {
    find_columns(region, ranges);
  }
  return ranges;
}

}  // namespace veldmark
