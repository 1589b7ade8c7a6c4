// Plain definitions of lines, first values and fixed-width fields.

#ifndef VELDMARK_TESTS_SUPPORT_PLAIN_TEXTS_H_
#define VELDMARK_TESTS_SUPPORT_PLAIN_TEXTS_H_

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace veldmark::plain {

struct Line {
  std::string_view text;  // without the line end and a carriage return before it
  bool ended;
};

// Removes the first line of a text and returns it; nullopt at the end of the text.
inline std::optional<Line> take_line(std::string_view& text) {
  if (text.empty()) {
    return std::nullopt;
  }
  const std::size_t length = text.find('\n');
  const bool ended = length != std::string_view::npos;
  std::string_view line = text.substr(0, length);
  text.remove_prefix(ended ? length + 1 : text.size());
  if (line.ends_with('\r')) {
    line.remove_suffix(1);
  }
  return Line{line, ended};
}

// Returns the first value of a free-form line. Blanks and tabs before it are skipped;
// after it they end it. A comma or slash always ends it.
inline std::string first_value(std::string_view line) {
  std::string value;
  for (const char character : line) {
    if (character == ',' || character == '/') {
      return value;
    }
    if (character != ' ' && character != '\t') {
      value += character;
    } else if (!value.empty()) {
      return value;
    }
  }
  return value;
}

inline bool is_true(const std::string& value) {
  for (const char* beginning : {"T", "t", ".T", ".t"}) {
    if (value.starts_with(beginning)) {
      return true;
    }
  }
  return false;
}

// Returns the first `width` characters, padded with blanks.
inline std::string text_field(std::string_view text, std::size_t width) {
  std::string field(text.substr(0, width));
  field.resize(width, ' ');
  return field;
}

// Returns the text right-aligned; asterisks if it does not fit.
inline std::string in_columns(const std::string& text, std::size_t width) {
  std::string columns(width, text.size() > width ? '*' : ' ');
  if (text.size() <= width) {
    columns.replace(width - text.size(), text.size(), text);
  }
  return columns;
}

// Returns the text with the blanks in its first `count` characters removed: the
// non-blank characters, then copies of the last character. A single character, or
// blanks only, are not changed.
inline std::string without_inner_blanks(const std::string& text, std::size_t count) {
  const std::string field = text.substr(0, count);
  std::string kept;
  for (const char character : field) {
    if (character != ' ') {
      kept += character;
    }
  }
  if (kept.empty() || count < 2) {
    return text;
  }
  kept.resize(field.size(), field.back());
  return kept + text.substr(count);
}

}  // namespace veldmark::plain

#endif  // VELDMARK_TESTS_SUPPORT_PLAIN_TEXTS_H_
