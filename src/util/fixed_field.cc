#include "util/fixed_field.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <limits>

namespace veldmark {
namespace {

std::string right_aligned(const std::string& text, int width) {
  const auto field_width = static_cast<std::size_t>(width);
  if (text.size() > field_width) {
    std::string asterisks(field_width, '*');
    return asterisks;
  }
  return std::string(field_width - text.size(), ' ') + text;
}

// The largest 32-bit real has 39 digits before the decimal point.
constexpr std::size_t kMaxRealLength = 64;

std::string decimal_text(float value, int decimals) {
  std::array<char, kMaxRealLength> text{};
  const int length =
      std::snprintf(text.data(), text.size(), "%.*f", decimals, double{value});
  return {text.data(), static_cast<std::size_t>(length)};
}

}  // namespace

std::string fixed_integer(std::int64_t value, int width) {
  return right_aligned(std::to_string(value), width);
}

std::string fixed_real(float value, int width, int decimals) {
  if (std::isnan(value)) {
    return right_aligned("NaN", width);
  }
  if (std::isinf(value)) {
    return right_aligned(std::signbit(value) ? "-Inf" : "Inf", width);
  }
  return right_aligned(decimal_text(value, decimals), width);
}

std::optional<std::int32_t> parse_integer(std::string_view field) {
  constexpr std::int64_t kLimit = std::int64_t{1} << 31;  // |smallest 32-bit integer|
  bool negative = false;
  bool sign_seen = false;
  bool digit_seen = false;
  std::int64_t magnitude = 0;
  for (const char character : field) {
    if (character == ' ' || character == '\t') {
      continue;
    }
    if ((character == '+' || character == '-') && !sign_seen && !digit_seen) {
      sign_seen = true;
      negative = character == '-';
    } else if (character >= '0' && character <= '9') {
      digit_seen = true;
      magnitude = magnitude * 10 + (character - '0');
      if (magnitude > kLimit) {
        return std::nullopt;
      }
    } else {
      return std::nullopt;
    }
  }
  if (sign_seen && !digit_seen) {
    return std::nullopt;
  }
  const std::int64_t value = negative ? -magnitude : magnitude;
  if (value > std::numeric_limits<std::int32_t>::max()) {
    return std::nullopt;
  }
  return static_cast<std::int32_t>(value);
}

}  // namespace veldmark
