// Published lines for tests.

#ifndef VELDMARK_TESTS_TERSIFY_RAW_TEXT_H_
#define VELDMARK_TESTS_TERSIFY_RAW_TEXT_H_

#include <cstddef>
#include <sstream>
#include <string>
#include <vector>

namespace veldmark::tersify::testing {

// Returns 720 numbers: c - 361 in field c, counted from 1.
inline std::vector<std::string> numbers() {
  std::vector<std::string> fields;
  for (int c = 1; c <= 720; ++c) fields.push_back(std::to_string(c - 361));
  return fields;
}

// Returns a published line, without its newline.
inline std::string raw_line(const std::vector<std::string>& fields,
                            const std::string& separator = "  ") {
  std::string line;
  for (const std::string& field : fields) line += separator + field;
  return line;
}

// Returns the line of numbers() with one field replaced; fields are counted from 1.
inline std::string raw_line_with(int field, const std::string& text) {
  std::vector<std::string> fields = numbers();
  fields.at(static_cast<std::size_t>(field - 1)) = text;
  return raw_line(fields);
}

// Returns a condensed line, without its newline. Requires fields of at most five
// characters.
inline std::string condensed_line(const std::vector<std::string>& fields) {
  std::string line;
  for (const std::string& field : fields) {
    line += std::string(5 - field.size(), ' ') + field;
  }
  return line;
}

inline std::string repeated(int times, const std::string& text) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

}  // namespace veldmark::tersify::testing

#endif  // VELDMARK_TESTS_TERSIFY_RAW_TEXT_H_
