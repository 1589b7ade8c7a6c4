#include "tersify/netcdf_tiles.h"

#include <algorithm>

#include "grid/grid_layout.h"

namespace veldmark::tersify {
namespace {

// The number of months and of rows of a tile.
struct Extent {
  std::size_t months = 1;
  std::size_t rows = kGridRows;
};

// Returns the largest tile of whole chunks within the limit, one chunk long in time. A
// chunk larger than the limit is split, and decompressed once for each tile.
Extent extent_of(const NetcdfVariable& variable) {
  if (variable.chunk.empty()) {
    return {};
  }
  constexpr std::size_t kMaxRows = kMaxTileValues / kGridColumns;
  const std::size_t months =
      std::min({variable.chunk[0], variable.dimensions[0].length, kMaxRows});
  const std::size_t chunk_rows = std::min(variable.chunk[1], std::size_t{kGridRows});
  const std::size_t most = kMaxRows / months;
  const std::size_t rows = most < chunk_rows ? most : most / chunk_rows * chunk_rows;
  return {.months = months, .rows = std::min(rows, std::size_t{kGridRows})};
}

}  // namespace

std::vector<NetcdfTile> tiles_of(const NetcdfVariable& variable) {
  const auto [months, rows] = extent_of(variable);
  const std::size_t all_months = variable.dimensions[0].length;
  std::vector<NetcdfTile> tiles;
  for (std::size_t month = 0; month < all_months; month += months) {
    for (std::size_t row = 0; row < kGridRows; row += rows) {
      tiles.push_back(
          {.first_month = month,
           .months = std::min(months, all_months - month),
           .rows = {.first = row, .count = std::min(rows, kGridRows - row)}});
    }
  }
  return tiles;
}

}  // namespace veldmark::tersify
