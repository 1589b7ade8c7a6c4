// How netCDF files begin; no library is needed to see it.

#ifndef VELDMARK_TERSIFY_NETCDF_FORMAT_H_
#define VELDMARK_TERSIFY_NETCDF_FORMAT_H_

#include <string_view>

namespace veldmark::tersify {

// Are these the first bytes of netCDF-4, which is HDF5?
inline bool is_hdf5(std::string_view first_bytes) {
  return first_bytes.starts_with("\x89HDF");
}

// Are these the first bytes of netCDF of any format?
inline bool is_netcdf(std::string_view first_bytes) {
  return first_bytes.starts_with("CDF") || is_hdf5(first_bytes);
}

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_NETCDF_FORMAT_H_
