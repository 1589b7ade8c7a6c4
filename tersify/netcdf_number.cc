#include "tersify/netcdf_number.h"

#include <array>
#include <cmath>
#include <cstdio>

namespace veldmark::tersify {

std::string number_text(double number) {
  if (std::isnan(number)) {
    return "nan";  // the standard library may print "-nan"
  }
  constexpr std::size_t kLongest = 32;
  std::array<char, kLongest> text{};
  const int size = std::snprintf(text.data(), text.size(), "%.9g", number);
  return {text.data(), static_cast<std::size_t>(size)};
}

}  // namespace veldmark::tersify
