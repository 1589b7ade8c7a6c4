// A series file: the monthly values of single grid cells as comma-separated text.
//
//   line 1         lon,lat,YYYY-MM,YYYY-MM,...: consecutive months, from January of the
//                  first year to December of the last; a byte order mark before it is
//                  skipped
//   other lines    one cell each, in any order: longitude and latitude of its centre
//                  in degrees (north and east positive), then one integer per month in
//                  stored units; -999 where a month has no value
//   newline        LF or CR LF

#ifndef VELDMARK_SERIES_TO_GRID_SERIES_FILE_H_
#define VELDMARK_SERIES_TO_GRID_SERIES_FILE_H_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "companion/line_buffer.h"

namespace veldmark::series_to_grid {

// The code of a missing value in a series.
constexpr std::int32_t kSeriesMissing = -999;

// Longer than a header with all years of four digits.
constexpr std::size_t kLongestSeriesLine = std::size_t{1024} * 1024;

// One cell and its months.
//
//   GridX       column 1..720, west to east, centre -179.75 + 0.5 * (GridX - 1) degrees
//   south_row   row 1..360 counted from the south, whatever the order of a grid file
//   values      one per month, index 0 = January of the series' first year
struct CellSeries {
  std::int32_t GridX{};
  std::int32_t south_row{};
  std::vector<std::int32_t> values;
};

// A whole series file. Both years are included; every cell has all their months.
struct Series {
  std::int32_t first_year{};
  std::int32_t last_year{};
  std::vector<CellSeries> cells;
};

// Reads a series file to its end. Returns at least one cell; values are integers of at
// most five characters within -32768..32767, the range that veldmark reads.
//
// Throws Failure "line N: ..." (N counted from 1) for the first line that is not of the
// format above, for a line longer than kLongestSeriesLine, for a cell listed twice, for
// a file without cells, and for a last line without a newline, because the file may be
// truncated. Exceptions of `read_more` pass through.
Series read_series(companion::LineBuffer::ReadMore read_more);

}  // namespace veldmark::series_to_grid

#endif  // VELDMARK_SERIES_TO_GRID_SERIES_FILE_H_
