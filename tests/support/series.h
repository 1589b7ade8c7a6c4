// Reads the series files of the real sample, independently of the tools.

#ifndef VELDMARK_TESTS_SUPPORT_SERIES_H_
#define VELDMARK_TESTS_SUPPORT_SERIES_H_

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace veldmark::testing {

// Longitude and latitude in hundredths of a degree, which is exact.
using Place = std::pair<int, int>;

// The monthly values of cells, starting with January of the first year.
using SeriesByPlace = std::map<Place, std::vector<int>>;

// Returns the path of the compressed sample of a variable ("tmp").
std::string sample_path(std::string_view variable);

// Returns the real sample of a variable: all cells, January 1901 to December 2016.
SeriesByPlace sample_series(std::string_view variable);

// Returns the series in a time-series file (.TSF). The first line of each cell must
// have the year `first_year`. Fails the test on any other format.
SeriesByPlace read_time_series(const std::string& content, int first_year);

// Returns the years first_year..last_year of a series that starts in 1901.
std::vector<int> years_of(const std::vector<int>& series, int first_year,
                          int last_year);

// Returns the grid row (south first) and column of a place.
int row_of(const Place& place);
int column_of(const Place& place);

}  // namespace veldmark::testing

#endif  // VELDMARK_TESTS_SUPPORT_SERIES_H_
