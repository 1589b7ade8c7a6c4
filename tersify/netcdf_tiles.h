// In which pieces a netCDF grid is read.

#ifndef VELDMARK_TERSIFY_NETCDF_TILES_H_
#define VELDMARK_TERSIFY_NETCDF_TILES_H_

#include <cstddef>
#include <vector>

#include "tersify/netcdf_input.h"
#include "tersify/netcdf_values.h"

namespace veldmark::tersify {

// Some months of some whole rows. Months are counted from 0.
struct NetcdfTile {
  std::size_t first_month = 0;
  std::size_t months = 1;
  NetcdfRows rows{};
};

// The most values of a tile, so that memory doesn't grow with the years: 64 MiB.
constexpr std::size_t kMaxTileValues = std::size_t{16} << 20;

// Returns the tiles of a variable, which together are the whole of it. A file whose
// values are compressed in chunks of many months is read in bands of a few rows, so
// that each chunk is decompressed once; any other one a month at a time.
//
//   variable    along time, 360 latitudes and 720 longitudes
std::vector<NetcdfTile> tiles_of(const NetcdfVariable& variable);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_NETCDF_TILES_H_
