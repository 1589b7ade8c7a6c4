// A plain definition of integer fields. Shares nothing with src/.

#ifndef VELDMARK_TESTS_SUPPORT_PLAIN_FIELDS_H_
#define VELDMARK_TESTS_SUPPORT_PLAIN_FIELDS_H_

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

namespace veldmark::plain {

inline bool only_digits(std::string_view text) {
  return text.find_first_not_of("0123456789") == std::string_view::npos;
}

// Removes blanks and tabs, takes the sign and adds up the digits. Returns 0 if nothing
// is left; nullopt if it is not an integer of 32 bits.
inline std::optional<std::int32_t> integer(std::string_view field) {
  std::string digits;
  for (const char character : field) {
    if (character != ' ' && character != '\t') {
      digits += character;
    }
  }
  if (digits.empty()) {
    return 0;
  }
  const bool negative = digits[0] == '-';
  if (negative || digits[0] == '+') {
    digits.erase(0, 1);
  }
  if (digits.empty() || !only_digits(digits)) {
    return std::nullopt;
  }
  digits.erase(0, digits.find_first_not_of('0'));
  if (digits.size() > 10) {
    return std::nullopt;
  }
  std::int64_t value = 0;
  std::int64_t weight = negative ? -1 : 1;
  for (std::size_t place = digits.size(); place > 0; --place, weight *= 10) {
    value += (digits[place - 1] - '0') * weight;
  }
  if (value < std::numeric_limits<std::int32_t>::min() ||
      value > std::numeric_limits<std::int32_t>::max()) {
    return std::nullopt;
  }
  return static_cast<std::int32_t>(value);
}

// Returns the value as it is stored: the signed 16-bit integer that is equal modulo
// 65536.
inline std::int16_t stored_value(std::int64_t value) {
  while (value > 32767) {
    value -= 65536;
  }
  while (value < -32768) {
    value += 65536;
  }
  return static_cast<std::int16_t>(value);
}

inline std::optional<std::int16_t> kept_of_field(std::string_view field) {
  const std::optional<std::int32_t> value = integer(field);
  return value ? std::optional(stored_value(*value)) : std::nullopt;
}

}  // namespace veldmark::plain

#endif  // VELDMARK_TESTS_SUPPORT_PLAIN_FIELDS_H_
