// Small grid files for tests: lines of the rows that matter, all others empty.

#ifndef VELDMARK_TESTS_SUPPORT_GRID_TEXT_H_
#define VELDMARK_TESTS_SUPPORT_GRID_TEXT_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace veldmark::testing {

// The text of a grid file that begins with January 1901. Years, months, rows and
// columns are counted as in the files: 1901.., 1..12, 1..360, 1..720.
class GridText {
 public:
  // Makes the lines of 1901..last_year; those of first_row..last_row hold 720 fields
  // with `missing`, all others nothing.
  GridText(int last_year, int first_row, int last_row, int missing);

  // Puts `value` right-aligned into a field.
  void set_value(int year, int month, int row, int column, int value);

  // Puts five characters into a field as they are.
  void set_field(int year, int month, int row, int column, std::string_view five);

  // Replaces a whole line.
  void set_line(int year, int month, int row, std::string text);

  // Makes every line end CR LF.
  void end_lines_with_crlf() { line_end_ = "\r\n"; }

  // Ends the file after `characters` characters of a line, before its line end. More
  // characters than the line has, up to its line end, keep that as well.
  void cut(int year, int month, int row, std::size_t characters);

  [[nodiscard]] std::string text() const;

  static std::size_t line_index(int year, int month, int row);

 private:
  std::vector<std::string> lines_;
  std::string line_end_ = "\n";
  std::size_t cut_line_;
  std::size_t cut_characters_ = 0;
};

// The name of a variable's data file, by its three- or six-letter name ("pre").
std::string data_file_name(std::string_view variable);

}  // namespace veldmark::testing

#endif  // VELDMARK_TESTS_SUPPORT_GRID_TEXT_H_
