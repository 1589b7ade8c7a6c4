// Converts the coordinates of a netCDF grid to rows and columns. Does no file I/O.

#ifndef VELDMARK_TERSIFY_NETCDF_AXES_H_
#define VELDMARK_TERSIFY_NETCDF_AXES_H_

#include <cstddef>
#include <span>

#include "grid/grid_layout.h"

namespace veldmark::tersify {

// Returns the order of the rows. Latitudes in degrees, north positive. Throws
// NetcdfFault unless they are the 360 cell centres, in ascending or descending order.
RowOrder find_row_order(std::span<const double> latitudes);

// Returns the index, counted from 0, of the longitude -179.75, the grid's westernmost
// column; the columns east of it follow, and wrap around at the end. Longitudes in
// degrees, east positive. Throws NetcdfFault unless they are the 720 cell centres in
// ascending order, from -179.75 or from 0.25.
std::size_t find_first_column(std::span<const double> longitudes);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_NETCDF_AXES_H_
