// Expands a series to the text of a grid file: for each month the whole 0.5 degree
// grid, with the series' values in their cells and the missing code everywhere else.
//
//   file    no header; from 1901 on, 12 months a year, 360 lines a month, one per row:
//           year Y, month M, row R are on line (Y - 1901) * 4320 + (M - 1) * 360 + R,
//           counted from 1
//   line    720 right-aligned integers, column 1 first, and a newline (LF)
// Does no file I/O.

#ifndef VELDMARK_SERIES_TO_GRID_GRID_WRITER_H_
#define VELDMARK_SERIES_TO_GRID_GRID_WRITER_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "grid/grid_layout.h"
#include "series_to_grid/series_file.h"

namespace veldmark::series_to_grid {

// Characters of one field: five in the condensed layout; six in the published one,
// where the first is always a blank and separates the numbers.
constexpr std::int32_t kCondensedField = kFieldWidth;
constexpr std::int32_t kPublishedField = 6;

// How a grid file is laid out.
//
//   field_width    characters of one field
//   north_first    row 1 is the northernmost row (scPDSI) instead of the southernmost
//   MissingCode    what a cell without a value holds: -999, or -9999 for scPDSI
struct GridForm {
  std::int32_t field_width = kCondensedField;
  bool north_first = false;
  std::int32_t MissingCode = kSeriesMissing;
};

// The years to take from a series, both included.
struct YearRange {
  std::int32_t first = kFirstDataYear;
  std::int32_t last = kLastDataYear;
};

// The text of one month: 360 lines.
class MonthText {
 public:
  // Creates a month in which every field is the missing code of `form`.
  explicit MonthText(const GridForm& form);

  // Sets the value of a cell.
  //
  //   south_row, GridX    1..360 counted from the south, 1..720 counted from the west
  //   value               at most five characters long
  void set(std::int32_t south_row, std::int32_t GridX, std::int32_t value);

  [[nodiscard]] std::string_view text() const { return text_; }

 private:
  GridForm form_;
  std::size_t line_length_;
  std::string text_;
};

// Returns the size of a month in bytes.
std::int64_t month_size(const GridForm& form);

// Returns the number of months in a grid file that ends with December of `last_year`.
std::int32_t count_grid_months(std::int32_t last_year);

// Calls `take_month` with the text of each month of a grid file, from January 1901 to
// December of `years.last`. A -999 of the series becomes the missing code of the form;
// months outside `years` or the series are missing.
//
//   years    1901 <= first <= last <= 2016
//
// Exceptions of `take_month` pass through. The text is reused: as all months have the
// same cells, only their fields are overwritten.
void make_grid(const Series& series, const YearRange& years, const GridForm& form,
               const std::function<void(std::string_view)>& take_month);

}  // namespace veldmark::series_to_grid

#endif  // VELDMARK_SERIES_TO_GRID_GRID_WRITER_H_
