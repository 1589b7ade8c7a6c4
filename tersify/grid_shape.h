// The extent of a grid file, and the month and row that a line belongs to.

#ifndef VELDMARK_TERSIFY_GRID_SHAPE_H_
#define VELDMARK_TERSIFY_GRID_SHAPE_H_

#include <cstddef>
#include <cstdint>
#include <string>

#include "grid/grid_layout.h"

namespace veldmark::tersify {

// The extent of a grid file: for each month of each year, `rows` lines of `columns`
// fields. Tests use smaller ones.
//
//   years_are_named    the file's name gives the years, so that fewer years are a fault
struct GridShape {
  std::int32_t first_year = kFirstDataYear;
  std::int32_t years = kLastDataYear - kFirstDataYear + 1;
  std::int32_t rows = kGridRows;
  std::int32_t columns = kGridColumns;
  bool years_are_named = false;

  [[nodiscard]] std::int64_t lines_per_year() const {
    return std::int64_t{kMonthsPerYear} * rows;
  }

  // Returns the number of lines of the whole file.
  [[nodiscard]] std::int64_t line_count() const { return years * lines_per_year(); }

  // Returns the characters of a line, without its newline.
  [[nodiscard]] std::size_t line_length() const {
    return kFieldWidth * static_cast<std::size_t>(columns);
  }
};

// Returns the English name of a month, 1 to 12.
std::string month_name(std::int32_t month);

// Returns the place of a line: "year 1961, July, row 283". Rows are counted in file
// order.
//
//   line    from 1; a line after the last year gets a later year
std::string place_of_line(std::int64_t line, const GridShape& shape);

// Returns the number of a line and its place: "line 261643 (year 1961, July, row 283)".
std::string name_of_line(std::int64_t line, const GridShape& shape);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_GRID_SHAPE_H_
