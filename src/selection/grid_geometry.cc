#include "selection/grid_geometry.h"

namespace veldmark {
namespace {

constexpr float kSouthernmost = -89.75F;
constexpr float kNorthernmost = 89.75F;
constexpr float kWesternmost = -179.75F;
constexpr float kEasternmost = 179.75F;
constexpr float kCellSize = 0.5F;

// Is `bound` on or between the two centres?
bool between(float low, float bound, float high) {
  return low <= bound && bound <= high;
}

RowRange find_rows_south_first(const SearchRegion& region) {
  RowRange rows;
  // A bound on a centre matches two neighbouring pairs; the later one counts.
  for (std::int32_t j = 1; j < kGridRows; ++j) {
    const float low = cell_latitude(j, RowOrder::kSouthFirst);
    const float high = cell_latitude(j + 1, RowOrder::kSouthFirst);
    if (between(low, region.minLat, high)) {
      rows.FirstRow = j + 1;
    }
    if (between(low, region.maxLat, high)) {
      rows.LastRow = j;
    }
  }
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
  for (std::int32_t j = 2; j <= kGridRows; ++j) {
    const float low = cell_latitude(j, RowOrder::kNorthFirst);
    const float high = cell_latitude(j - 1, RowOrder::kNorthFirst);
    if (low <= region.minLat && region.minLat < high) {
      rows.LastRow = j;
    }
    if (low <= region.maxLat && region.maxLat < high) {
      rows.FirstRow = j - 1;
    }
  }
  // Kept on purpose: each pole corrects the end that the loop doesn't fill.
  if (region.minLat <= kSouthernmost) {
    rows.FirstRow = kGridRows;
  }
  if (region.maxLat >= kNorthernmost) {
    rows.LastRow = 1;
  }
  return rows;
}

// One range of columns; FirstCol and LastCol come in with what they keep.
void find_columns(const SearchRegion& region, GridRanges& ranges) {
  for (std::int32_t j = 1; j < kGridColumns; ++j) {
    const float west = cell_longitude(j);
    const float east = cell_longitude(j + 1);
    if (between(west, region.minLon, east)) {
      ranges.FirstCol = j + 1;
    }
    if (between(west, region.maxLon, east)) {
      ranges.LastCol = j;
    }
  }
  if (region.minLon <= kWesternmost) {
    ranges.FirstCol = 1;
  }
  if (region.maxLon >= kEasternmost) {
    ranges.LastCol = kGridColumns;
  }
}

// A west and an east piece; LastCol comes in with what it keeps. No end corrections.
void find_columns_in_two_pieces(const SearchRegion& region, GridRanges& ranges) {
  ranges.FirstCol = 1;
  ranges.EastLastCol = kGridColumns;
  for (std::int32_t j = 1; j < kGridColumns; ++j) {
    const float west = cell_longitude(j);
    const float east = cell_longitude(j + 1);
    if (between(west, region.maxLon, east)) {
      ranges.LastCol = j;
    }
    if (between(west, region.minLon, east)) {
      ranges.EastFirstCol = j + 1;
    }
  }
}

}  // namespace

float cell_longitude(std::int32_t column) {
  return kWesternmost + kCellSize * static_cast<float>(column - 1);
}

float cell_latitude(std::int32_t row, RowOrder order) {
  const float distance = kCellSize * static_cast<float>(row - 1);
  return order == RowOrder::kSouthFirst ? kSouthernmost + distance
                                        : kNorthernmost - distance;
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
    find_columns_in_two_pieces(region, ranges);
  } else {
    find_columns(region, ranges);
  }
  return ranges;
}

}  // namespace veldmark
