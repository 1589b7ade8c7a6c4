#include "extract/decimal_text.h"

#include <array>
#include <charconv>
#include <cstddef>

namespace veldmark::extract {

std::string decimal_text(double value, int decimals) {
  constexpr std::size_t kBufferSize = 320;  // the largest double has 309 digits
  std::array<char, kBufferSize> digits{};
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                    std::chars_format::fixed, decimals);
  return {digits.data(), result.ptr};
}

std::string short_decimal_text(double value) {
  constexpr int kDecimals = 9;
  std::string text = decimal_text(value, kDecimals);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.ends_with('.')) {
    text.pop_back();
  }
  return text == "-0" ? "0" : text;
}

}  // namespace veldmark::extract
