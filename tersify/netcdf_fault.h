// What makes a netCDF file other than a published one.

#ifndef VELDMARK_TERSIFY_NETCDF_FAULT_H_
#define VELDMARK_TERSIFY_NETCDF_FAULT_H_

#include <stdexcept>

namespace veldmark::tersify {

// The text says what was found and what was expected. It names no file: what looks at
// axes and values doesn't know which file they come from.
struct NetcdfFault : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_NETCDF_FAULT_H_
