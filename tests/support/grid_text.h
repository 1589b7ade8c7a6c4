// Small grid files for tests: full lines for a few rows, empty lines for the others.

#ifndef VELDMARK_TESTS_SUPPORT_GRID_TEXT_H_
#define VELDMARK_TESTS_SUPPORT_GRID_TEXT_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace veldmark::testing {

// The text of a grid file that starts with January 1901. Years, months, rows and
// columns are counted as in the files: 1901.., 1..12, 1..360, 1..720.
class GridText {
 public:
  // Creates the lines of 1901..last_year. Those of rows first_row..last_row have 720
  // fields with `missing`; the others are empty.
  GridText(int last_year, int first_row, int last_row, int missing);

  // Writes `value`, right-aligned, into a field.
  void set_value(int year, int month, int row, int column, int value);

  // Writes five characters into a field.
  void set_field(int year, int month, int row, int column, std::string_view five);

  // Replaces a whole line.
  void set_line(int year, int month, int row, std::string text);

  // Ends every line with CR LF.
  void end_lines_with_crlf() { line_end_ = "\r\n"; }

  // Truncates the file after `characters` characters of a line, without its newline. A
  // larger number than the line has, up to its newline, includes that.
  void cut(int year, int month, int row, std::size_t characters);

  [[nodiscard]] std::string text() const;

  static std::size_t line_index(int year, int month, int row);

 private:
  std::vector<std::string> lines_;
  std::string line_end_ = "\n";
  std::size_t cut_line_;
  std::size_t cut_characters_ = 0;
};

// Returns the name of a variable's data file, by its short name ("pre").
std::string data_file_name(std::string_view variable);

}  // namespace veldmark::testing

#endif  // VELDMARK_TESTS_SUPPORT_GRID_TEXT_H_
