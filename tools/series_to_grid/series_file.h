// A series file: the monthly values of single grid cells as comma-separated text.
//
//   line 1         lon,lat,YYYY-MM,YYYY-MM,...   the months without a gap, January of
//                  the first year to December of the last; a byte order mark before it
//                  is skipped
//   other lines    one cell each, in any order: longitude and latitude of its centre
//                  in degrees (north and east positive), then one integer per month in
//                  stored units; -999 where a month has no value
//   line end       LF; a CR before it belongs to it

#ifndef VELDMARK_SERIES_TO_GRID_SERIES_FILE_H_
#define VELDMARK_SERIES_TO_GRID_SERIES_FILE_H_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "companion/line_buffer.h"

namespace veldmark::series_to_grid {

// What stands in a series for a month without a value.
constexpr std::int32_t kSeriesMissing = -999;

// The header of ten thousand years, the longest that can be, takes less.
constexpr std::size_t kLongestSeriesLine = std::size_t{1024} * 1024;

// One cell and its months.
//
//   GridX       column 1..720, west to east, centre -179.75 + 0.5 * (GridX - 1) degrees
//   south_row   row 1..360 counted from the south, whatever the order of a grid file
//   values      one per month, index 0 = January of the series' first year
struct CellSeries {
  std::int32_t GridX = 0;
  std::int32_t south_row = 0;
  std::vector<std::int32_t> values;
};

// A whole series file. Both years are included; every cell has all their months.
struct Series {
  std::int32_t first_year = 0;
  std::int32_t last_year = 0;
  std::vector<CellSeries> cells;
};

// Reads a series file to its end. Returns at least one cell; values are integers of at
// most five characters within -32768..32767, which is what veldmark reads.
//
// Throws Failure "line N: ..." (N counted from 1) for the first line that breaks the
// form above, for a line longer than any can be, for a cell listed twice or no cell at
// all, and for a last line without a line end: a cut file must not pass for a whole
// one. What `read_more` throws passes through.
Series read_series(companion::LineBuffer::ReadMore read_more);

}  // namespace veldmark::series_to_grid

#endif  // VELDMARK_SERIES_TO_GRID_SERIES_FILE_H_
