// Texts once more: lines, first values, fields of a width.

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

// Takes the first line off a text; nullopt at its end.
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

// The first value of a free-form line: blanks and tabs are passed over until it has
// begun, and then end it; a comma and a slash end it always.
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

// The first `width` characters, blanks where there are none.
inline std::string text_field(std::string_view text, std::size_t width) {
  std::string field(text.substr(0, width));
  field.resize(width, ' ');
  return field;
}

// At the right of its columns; asterisks when it needs more.
inline std::string in_columns(const std::string& text, std::size_t width) {
  std::string columns(width, text.size() > width ? '*' : ' ');
  if (text.size() <= width) {
    columns.replace(width - text.size(), text.size(), text);
  }
  return columns;
}

// The first `count` characters with their blanks closed up: what is no blank, and then
// the last of them over and over. A single character stays, and blanks alone.
inline std::string closed_up(const std::string& text, std::size_t count) {
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
