// Divides a netCDF grid into tiles, which are read one at a time.

#ifndef VELDMARK_TERSIFY_NETCDF_TILES_H_
#define VELDMARK_TERSIFY_NETCDF_TILES_H_

#include <cstddef>
#include <vector>

#include "tersify/netcdf_input.h"
#include "tersify/netcdf_values.h"

namespace veldmark::tersify {

// A range of months of a range of whole rows. Months are counted from 0.
struct NetcdfTile {
  std::size_t first_month = 0;
  std::size_t months = 1;
  NetcdfRows rows{};
};

// The most values of a tile (64 MiB), so that memory use doesn't grow with the years.
constexpr std::size_t kMaxTileValues = std::size_t{16} << 20;

// Returns tiles that cover a variable exactly once. A variable whose chunks span
// several months is read in bands of a few rows, so that each chunk is decompressed
// once; any other one is read month by month.
//
//   variable    has the dimensions time, latitude (360) and longitude (720)
std::vector<NetcdfTile> tiles_of(const NetcdfVariable& variable);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_NETCDF_TILES_H_
