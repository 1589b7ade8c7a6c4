// Plain definitions of what tersify makes of lines and of the faults that it finds.

#ifndef VELDMARK_TESTS_FUZZ_PLAIN_TERSIFY_H_
#define VELDMARK_TESTS_FUZZ_PLAIN_TERSIFY_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/plain/fields.h"
#include "tersify/grid_shape.h"

namespace veldmark::fuzz {

using tersify::GridShape;

inline std::vector<std::string> plain_words(std::string_view line) {
  std::vector<std::string> words(1);
  for (const char character : line) {
    if (character != ' ' && character != '\t') {
      words.back() += character;
    } else if (!words.back().empty()) {
      words.emplace_back();
    }
  }
  if (words.back().empty()) words.pop_back();
  return words;
}

// Returns the shortest text of an integer, right-aligned in five characters. Returns
// nullopt if `word` is not an integer or needs more than five.
inline std::optional<std::string> plain_condensed_word(const std::string& word) {
  const bool has_sign = word.starts_with('-') || word.starts_with('+');
  std::string digits = word.substr(has_sign ? 1 : 0);
  if (digits.empty() || !plain::only_digits(digits)) return std::nullopt;
  while (digits.size() > 1 && digits.front() == '0') digits.erase(0, 1);
  const bool negative = word.starts_with('-') && digits != "0";
  const std::string text = (negative ? "-" : "") + digits;
  if (text.size() > 5) return std::nullopt;
  return std::string(5 - text.size(), ' ') + text;
}

// A condensed line, or the number of the bad field.
struct PlainLine {
  std::string text;
  int fault = 0;  // 0 for none
};

inline PlainLine plain_condensed(std::string_view line) {
  const std::vector<std::string> words = plain_words(line);
  PlainLine condensed;
  for (std::size_t field = 1; field <= kGridColumns; ++field) {
    std::optional<std::string> word;
    if (field <= words.size()) word = plain_condensed_word(words[field - 1]);
    if (!word) return {"", static_cast<int>(field)};
    condensed.text += *word;
  }
  if (words.size() > kGridColumns) return {"", kGridColumns + 1};
  return condensed;
}

inline bool is_plainly_good_field(const std::string& field) {
  const std::size_t begin = std::min(field.find_first_not_of(' '), field.size());
  const std::string text = field.substr(begin);
  const bool has_sign = text.starts_with('-') || text.starts_with('+');
  const std::string digits = text.substr(has_sign ? 1 : 0);
  return !digits.empty() && plain::only_digits(digits);
}

inline bool is_plainly_good_line(const std::string& line, const GridShape& shape) {
  if (line.size() != shape.line_length()) return false;
  for (std::size_t i = 0; i < line.size(); i += 5) {
    if (!is_plainly_good_field(line.substr(i, 5))) return false;
  }
  return true;
}

// Returns the lines of a text without their ends; the last one may lack its own.
inline std::vector<std::string> plain_lines(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    std::string& line = lines.emplace_back(text.substr(0, end));
    if (line.ends_with('\r')) line.pop_back();
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return lines;
}

// Returns the number of the first bad line, counted from 1; nullopt for a complete
// file, which has whole years. If the file ends early, that is the first missing line.
// If a year after the expected ones is incomplete, it is the first line of that year.
inline std::optional<std::int64_t> plain_fault(std::string_view text,
                                               const GridShape& shape) {
  const std::int64_t year = std::int64_t{12} * shape.rows;
  const std::int64_t expected = year * shape.years;
  const auto first_fault = [&](std::int64_t number) {
    const bool too_many = expected < number && number <= expected + year;
    return too_many ? expected + 1 : number;
  };
  std::int64_t number = 0;
  for (const std::string& line : plain_lines(text)) {
    ++number;
    if (!is_plainly_good_line(line, shape)) return first_fault(number);
  }
  if (number > 0 && number % year == 0) return std::nullopt;
  return number > expected ? first_fault(number) + (number > expected + year ? 1 : 0)
                           : number + 1;
}

}  // namespace veldmark::fuzz

#endif  // VELDMARK_TESTS_FUZZ_PLAIN_TERSIFY_H_
