// Computes the size that a netCDF file of the classic format must have, because the
// netCDF library reads the missing end of a truncated file as zeros, which are values.

#ifndef VELDMARK_TERSIFY_NETCDF_CLASSIC_H_
#define VELDMARK_TERSIFY_NETCDF_CLASSIC_H_

#include <cstddef>
#include <cstdint>
#include <functional>

namespace veldmark::tersify {

// Reads up to `size` bytes of a file. Returns their number; 0 at the end of the file.
using ReadBytes = std::function<std::size_t(char* buffer, std::size_t size)>;

// Returns the minimum size in bytes of a file with this header and all values of all
// variables, saturated at the maximum of the type; 0 for a file that isn't of the
// classic format (CDF-1, CDF-2, CDF-5).
//
//   read    reads the file, from its first byte on
//
// Throws NetcdfFault if the file ends within the header, or the header is invalid.
std::uint64_t least_classic_size(const ReadBytes& read);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_NETCDF_CLASSIC_H_
