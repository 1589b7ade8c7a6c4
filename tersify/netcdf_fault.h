// The exception for a netCDF file that isn't a published grid file.

#ifndef VELDMARK_TERSIFY_NETCDF_FAULT_H_
#define VELDMARK_TERSIFY_NETCDF_FAULT_H_

#include <stdexcept>

namespace veldmark::tersify {

// The message says what was found and what was expected. It doesn't name the file,
// which is unknown where axes and values are checked; the caller adds the name.
struct NetcdfFault : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_NETCDF_FAULT_H_
