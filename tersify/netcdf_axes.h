// From the coordinates of a netCDF grid to rows and columns.
//
// Nothing here touches a file.

#ifndef VELDMARK_TERSIFY_NETCDF_AXES_H_
#define VELDMARK_TERSIFY_NETCDF_AXES_H_

#include <cstddef>
#include <span>

#include "grid/grid_layout.h"

namespace veldmark::tersify {

// Returns the order of the rows. Latitudes in degrees, north positive. Throws
// NetcdfFault unless they are the 360 centres of the grid from one end to the other.
RowOrder find_row_order(std::span<const double> latitudes);

// Returns the index, from 0, of the westernmost column of the grid, -179.75 degrees;
// the columns east of it follow, behind the last one those from the first on.
// Longitudes in degrees, east positive. Throws NetcdfFault unless they are the 720
// centres of the grid from -179.75 or 0.25 on eastward.
std::size_t find_first_column(std::span<const double> longitudes);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_NETCDF_AXES_H_
