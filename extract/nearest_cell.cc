#include "extract/nearest_cell.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <tuple>

#include "grid/grid_layout.h"

namespace veldmark::extract {
namespace {

constexpr double kHalfCircle = 180;
constexpr std::int32_t kHalfTheColumns = kGridColumns / 2;
// Per degree of latitude, rounded down, so that the search reaches far enough.
constexpr double kKmPerDegree = 111;

// Distances are compared to the millimetre, so that cells at equal distances, such as
// those around a pole, compare equal in spite of rounding.
constexpr double kMillimetresPerKm = 1e6;

// Returns how many rows or columns further a centre within `reach` degrees of a point
// can be. The point is at most half a cell from the centre of its own.
std::int32_t cells_within(double reach) {
  return static_cast<std::int32_t>(reach / kCellSize) + 1;
}

// Returns how many columns to the east and to the west can have centres within `reach`
// degrees of a point.
std::int32_t column_reach(double latitude, double reach) {
  constexpr double kRadian = std::numbers::pi / kHalfCircle;
  constexpr double kQuarterCircle = 90;
  const double sine = std::sin(std::min(reach, kQuarterCircle) * kRadian) /
                      std::cos(latitude * kRadian);
  if (sine >= 1) {  // the circle reaches a pole
    return kHalfTheColumns;
  }
  return std::min(kHalfTheColumns, cells_within(std::asin(sine) / kRadian));
}

// Calls `use` with each cell within the radius and its distance.
template <typename Use>
void for_each_around(const Point& point, double radius_km, RowOrder order, Use use) {
  const double reach = std::min(radius_km / kKmPerDegree, kHalfCircle);
  const std::int32_t rows = cells_within(reach);
  const std::int32_t columns = column_reach(point.latitude, reach);
  const Cell own = cell_of(point, order);
  const std::int32_t last_row = std::min(own.GridY + rows, kGridRows);
  for (std::int32_t row = std::max(own.GridY - rows, 1); row <= last_row; ++row) {
    const std::int32_t last = std::min(columns, kHalfTheColumns - 1);
    for (std::int32_t offset = -columns; offset <= last; ++offset) {
      const std::int32_t column =
          (own.GridX - 1 + offset + kGridColumns) % kGridColumns + 1;
      const Cell cell{.GridY = row, .GridX = column};
      const double distance = distance_km(point, centre_of(cell, order));
      if (distance <= radius_km) {
        use(cell, distance);
      }
    }
  }
}

}  // namespace

std::vector<Cell> cells_around(const Point& point, double radius_km, RowOrder order) {
  std::vector<Cell> cells;
  for_each_around(point, radius_km, order, [&](const Cell& cell, double /*distance*/) {
    cells.push_back(cell);
  });
  return cells;
}

std::optional<Cell> nearest_cell(const Point& point, double radius_km, RowOrder order,
                                 const std::function<bool(const Cell&)>& has_data) {
  std::optional<Cell> nearest;
  std::tuple<double, double, double> least;
  for_each_around(point, radius_km, order, [&](const Cell& cell, double distance) {
    const Point centre = centre_of(cell, order);
    const std::tuple rank(std::round(distance * kMillimetresPerKm), centre.latitude,
                          centre.longitude);
    if ((!nearest || rank < least) && has_data(cell)) {
      nearest = cell;
      least = rank;
    }
  });
  return nearest;
}

}  // namespace veldmark::extract
