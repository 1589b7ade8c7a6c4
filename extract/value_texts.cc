#include "extract/value_texts.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace veldmark::extract {

std::string exact_decimal(std::int32_t value, std::int32_t decimals) {
  std::string digits = std::to_string(std::abs(value));
  const auto places = static_cast<std::size_t>(decimals);
  if (places > 0) {
    if (digits.size() <= places) {
      digits.insert(0, places + 1 - digits.size(), '0');
    }
    digits.insert(digits.size() - places, 1, '.');
  }
  return (value < 0 ? "-" : "") + digits;
}

ValueTexts::ValueTexts(std::int32_t decimals, std::int32_t MissingCode)
    : texts_(std::size_t{std::numeric_limits<std::uint16_t>::max()} + 1) {
  constexpr std::int32_t kLowest = std::numeric_limits<std::int16_t>::min();
  constexpr std::int32_t kHighest = std::numeric_limits<std::int16_t>::max();
  for (std::int32_t value = kLowest; value <= kHighest; ++value) {
    const std::string text = value == MissingCode ? "" : exact_decimal(value, decimals);
    Text& entry = texts_[static_cast<std::uint16_t>(value)];
    std::copy(text.begin(), text.end(), entry.begin());
    entry.back() = static_cast<char>(text.size());
  }
}

}  // namespace veldmark::extract
