// What a netCDF file holds, judged by its names and coordinates.

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
//   variable    lies along time, latitude and longitude, in this order
struct NetcdfLayout {
  const VariableEntry& entry;
  NetcdfVariable variable;
  NetcdfGridForm form;
  FoundYears years;
};

// Finds the variable and how it lies.
//
//   name    of the file; where it tells the variable, the file must hold that one, and
//           where it doesn't, just one of the variables there are
//
// Throws NetcdfFault that says what was found and what was expected.
NetcdfLayout find_layout(const NetcdfInput& input, const std::string& name);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_NETCDF_LAYOUT_H_
