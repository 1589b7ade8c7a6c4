#include "util/free_form.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdlib>

namespace veldmark {
namespace {

constexpr std::size_t kRealWidth = 15;

// Skips the first character of `text` if it is one of `choices`. Returns whether it
// was.
bool skip_one_of(std::string_view& text, std::string_view choices) {
  if (text.empty() || choices.find(text.front()) == std::string_view::npos) {
    return false;
  }
  text.remove_prefix(1);
  return true;
}

// Skips the digits at the start of `text`. Returns how many there were.
std::size_t skip_digits(std::string_view& text) {
  const std::size_t count = std::min(text.find_first_not_of("0123456789"), text.size());
  text.remove_prefix(count);
  return count;
}

bool is_decimal(std::string_view text) {
  skip_one_of(text, "+-");
  std::size_t digits = skip_digits(text);
  if (skip_one_of(text, ".")) {
    digits += skip_digits(text);
  }
  if (digits == 0) {
    return false;
  }
  if (skip_one_of(text, "EeDd")) {
    skip_one_of(text, "+-");
    if (skip_digits(text) == 0) {
      return false;
    }
  }
  return text.empty();
}

// Returns the shortest decimal of a finite `value`. ".0" is added where it has no
// fraction, before the exponent if there is one.
std::string shortest_decimal(float value) {
  constexpr std::size_t kMaxLength = 32;
  std::array<char, kMaxLength> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  std::string text(buffer.data(), end.ptr);
  if (text.find('.') == std::string::npos) {
    text.insert(std::min(text.find('e'), text.size()), ".0");
  }
  return text;
}

std::string real_text(float value) {
  if (std::isnan(value)) {
    return "NaN";
  }
  if (std::isinf(value)) {
    return std::signbit(value) ? "-Inf" : "Inf";
  }
  return shortest_decimal(value);
}

}  // namespace

std::string_view first_value(std::string_view line) {
  const std::size_t begin = line.find_first_not_of(" \t");
  if (begin == std::string_view::npos) {
    return {};
  }
  line.remove_prefix(begin);
  return line.substr(0, line.find_first_of(" \t,/"));
}

bool parse_logical(std::string_view value) {
  skip_one_of(value, ".");
  return skip_one_of(value, "Tt");
}

std::optional<float> parse_real(std::string_view value) {
  if (!is_decimal(value)) {
    return std::nullopt;
  }
  std::string text(value);
  for (char& character : text) {
    if (character == 'D' || character == 'd') {
      character = 'e';  // strtof does not know the double-precision exponent letter
    }
  }
  // strtof rounds correctly and returns infinity or zero for out-of-range values.
  return std::strtof(text.c_str(), nullptr);
}

std::string free_form_integer(std::int64_t value) {
  return " " + std::to_string(value);
}

std::string free_form_real(float value) {
  std::string text = real_text(value);
  if (text.size() > kRealWidth) {
    text.assign(kRealWidth, '*');
  }
  return std::string(1 + kRealWidth - text.size(), ' ') + text;
}

}  // namespace veldmark
