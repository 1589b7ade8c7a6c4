// Digits in text, independent of the locale.

#ifndef VELDMARK_COMPANION_DIGITS_H_
#define VELDMARK_COMPANION_DIGITS_H_

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace veldmark::companion {

inline bool is_digit(char c) { return '0' <= c && c <= '9'; }

// Returns whether the text consists of one or more digits only.
inline bool is_number(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), is_digit);
}

// Returns whether the text has a digit wherever `shape` has a 'd', and the same
// characters as `shape` elsewhere.
inline bool has_shape(std::string_view text, std::string_view shape) {
  return std::equal(text.begin(), text.end(), shape.begin(), shape.end(),
                    [](char c, char s) { return s == 'd' ? is_digit(c) : c == s; });
}

// Returns the number that a text of up to nine digits spells.
inline std::int32_t number_of(std::string_view digits) {
  std::int32_t number = 0;
  for (const char digit : digits) {
    number = 10 * number + (digit - '0');
  }
  return number;
}

}  // namespace veldmark::companion

#endif  // VELDMARK_COMPANION_DIGITS_H_
