// The magic bytes of netCDF files, checked without the netCDF library.

#ifndef VELDMARK_TERSIFY_NETCDF_FORMAT_H_
#define VELDMARK_TERSIFY_NETCDF_FORMAT_H_

#include <string_view>

namespace veldmark::tersify {

// Returns whether a file with these first bytes is netCDF-4, which is HDF5.
inline bool is_hdf5(std::string_view first_bytes) {
  return first_bytes.starts_with("\x89HDF");
}

// Returns whether a file with these first bytes is netCDF of any format.
inline bool is_netcdf(std::string_view first_bytes) {
  return first_bytes.starts_with("CDF") || is_hdf5(first_bytes);
}

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_NETCDF_FORMAT_H_
