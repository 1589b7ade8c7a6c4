// Integers in fields once more, as a person would read them: strike out the blanks,
// look at what is left, add up the digits. Shares nothing with src/.

#ifndef VELDMARK_TESTS_SUPPORT_PLAIN_FIELD_H_
#define VELDMARK_TESTS_SUPPORT_PLAIN_FIELD_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace veldmark::plain {

// The value of a field of at most 18 characters; nothing when it is no integer.
inline std::optional<std::int64_t> integer(std::string_view field) {
  std::string rest;
  for (const char character : field) {
    if (character != ' ' && character != '\t') {
      rest += character;
    }
  }
  if (rest.empty()) {
    return 0;
  }
  const bool negative = rest[0] == '-';
  if (negative || rest[0] == '+') {
    rest.erase(0, 1);
  }
  if (rest.empty() || rest.find_first_not_of("0123456789") != std::string::npos) {
    return std::nullopt;
  }
  std::int64_t value = 0;
  std::int64_t weight = 1;
  for (std::size_t place = rest.size(); place > 0; --place, weight *= 10) {
    value += (rest[place - 1] - '0') * weight;
  }
  return negative ? -value : value;
}

// What is kept of a value: the signed 16-bit integer that is the same modulo 65536.
inline std::int16_t kept(std::int64_t value) {
  while (value > 32767) {
    value -= 65536;
  }
  while (value < -32768) {
    value += 65536;
  }
  return static_cast<std::int16_t>(value);
}

inline std::optional<std::int16_t> kept_of_field(std::string_view field) {
  const std::optional<std::int64_t> value = integer(field);
  if (!value) {
    return std::nullopt;
  }
  return kept(*value);
}

}  // namespace veldmark::plain

#endif  // VELDMARK_TESTS_SUPPORT_PLAIN_FIELD_H_
