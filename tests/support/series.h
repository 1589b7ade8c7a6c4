// Series files of the real sample, read by the tests themselves.

#ifndef VELDMARK_TESTS_SUPPORT_SERIES_H_
#define VELDMARK_TESTS_SUPPORT_SERIES_H_

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace veldmark::testing {

// Longitude and latitude in hundredths of a degree: what the files hold is exact.
using Place = std::pair<int, int>;

// The monthly values of cells, January of the first year first.
using SeriesByPlace = std::map<Place, std::vector<int>>;

// The path of the compressed sample of a variable ("tmp").
std::string sample_path(std::string_view variable);

// Reads the real sample of a variable: all cells, January 1901 to December 2016.
SeriesByPlace sample_series(std::string_view variable);

// Reads a time-series file (.TSF) by the columns of its lines, `first_year` being the
// year that the first line of every cell must show. Fails the test on anything that
// doesn't look like a time-series file.
SeriesByPlace read_time_series(const std::string& content, int first_year);

// The series of the years first_year..last_year of a series that begins in 1901.
std::vector<int> years_of(const std::vector<int>& series, int first_year,
                          int last_year);

// Grid row (south first) and column of a place.
int row_of(const Place& place);
int column_of(const Place& place);

}  // namespace veldmark::testing

#endif  // VELDMARK_TESTS_SUPPORT_SERIES_H_
