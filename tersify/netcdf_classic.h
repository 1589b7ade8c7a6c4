// How long a netCDF file of the classic format must be.
//
// The netCDF library reads zeros where such a file has been cut, and zeros are values.

#ifndef VELDMARK_TERSIFY_NETCDF_CLASSIC_H_
#define VELDMARK_TERSIFY_NETCDF_CLASSIC_H_

#include <cstddef>
#include <cstdint>
#include <functional>

namespace veldmark::tersify {

// Reads the next bytes of a file, up to `size` of them; returns 0 at its end.
using ReadBytes = std::function<std::size_t(char* buffer, std::size_t size)>;

// Returns the least size in bytes of a file with this header, all values of all
// variables included; the greatest number there is when it is greater still; 0 for a
// file that isn't of the classic format (CDF-1, CDF-2, CDF-5).
//
//   read    hands out the file from its first byte on
//
// Throws NetcdfFault when the file ends in the header, or the header is none.
std::uint64_t least_classic_size(const ReadBytes& read);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_NETCDF_CLASSIC_H_
