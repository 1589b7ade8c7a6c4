// Formats numbers of a netCDF file for messages.

#ifndef VELDMARK_TERSIFY_NETCDF_NUMBER_H_
#define VELDMARK_TERSIFY_NETCDF_NUMBER_H_

#include <cstddef>
#include <string>

namespace veldmark::tersify {

// The most characters of an attribute that a message shows.
constexpr std::size_t kShownOfText = 60;

// Returns up to 9 significant digits, enough to distinguish any two floats:
// "-89.75", "9.96921e+36", "nan".
std::string number_text(double number);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_NETCDF_NUMBER_H_
