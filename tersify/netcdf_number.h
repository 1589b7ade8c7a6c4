// Numbers of a netCDF file as messages show them.

#ifndef VELDMARK_TERSIFY_NETCDF_NUMBER_H_
#define VELDMARK_TERSIFY_NETCDF_NUMBER_H_

#include <cstddef>
#include <string>

namespace veldmark::tersify {

// Characters of an attribute that a message shows.
constexpr std::size_t kShownOfText = 60;

// Returns up to 9 significant digits, which tell any float from its neighbours:
// "-89.75", "9.96921e+36", "nan".
std::string number_text(double number);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_NETCDF_NUMBER_H_
