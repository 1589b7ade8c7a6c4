#include "extract/decimal_text.h"

#include <array>
#include <charconv>
#include <cstddef>

namespace veldmark::extract {

std::string decimal_text(double value, int decimals) {
  constexpr std::size_t kBufferSize = 32;
  std::array<char, kBufferSize> digits{};
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                    std::chars_format::fixed, decimals);
  return {digits.data(), result.ptr};
}

}  // namespace veldmark::extract
