// Finds out what a netCDF file contains, from its names and coordinates.

#ifndef VELDMARK_TERSIFY_NETCDF_LAYOUT_H_
#define VELDMARK_TERSIFY_NETCDF_LAYOUT_H_

#include <string>

#include "catalogue/variable_catalogue.h"
#include "tersify/netcdf_input.h"
#include "tersify/netcdf_time.h"
#include "tersify/netcdf_values.h"

namespace veldmark::tersify {

// The grid of one variable over whole years.
//
//   variable    has the dimensions time, latitude and longitude, in this order
struct NetcdfLayout {
  const VariableEntry& entry;
  NetcdfVariable variable;
  NetcdfGridForm form;
  FoundYears years;
};

// Finds the climate variable, its axes and its years.
//
//   name    the file's name; if it names a variable, the file must contain that one,
//   and
//           otherwise exactly one of the known variables
//
// Throws NetcdfFault that says what was found and what was expected.
NetcdfLayout find_layout(const NetcdfInput& input, const std::string& name);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_NETCDF_LAYOUT_H_
