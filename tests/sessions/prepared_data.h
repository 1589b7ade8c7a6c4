// The files that a transcript needs, as described by its "data" lines.

#ifndef VELDMARK_TESTS_SESSIONS_PREPARED_DATA_H_
#define VELDMARK_TESTS_SESSIONS_PREPARED_DATA_H_

#include <string>
#include <vector>

namespace veldmark::testing {

// Prepares the current folder. Each line is one of
//   grid VARIABLE LAST_YEAR FIRST_ROW-LAST_ROW MISSING
//                                      a grid file with full lines for these rows and
//                                      empty ones for all others
//   series VARIABLE YEAR ROW COLUMN V1 ... V12    twelve months of a cell
//   constant VARIABLE FIRST_YEAR-LAST_YEAR ROW COLUMN V    all months of a cell
//   value VARIABLE YEAR MONTH ROW COLUMN V        one month of a cell
//   field VARIABLE YEAR MONTH ROW COLUMN |five|   five characters as they are
//   line VARIABLE YEAR MONTH ROW |text|           a whole line
//   crlf VARIABLE                                 CR LF line ends
//   cut VARIABLE YEAR MONTH ROW CHARACTERS        the file ends in that line
//   folder NAME                                   a folder of that name
//   file NAME |text|                              a file with one line
void prepare_data(const std::vector<std::string>& lines);

}  // namespace veldmark::testing

#endif  // VELDMARK_TESTS_SESSIONS_PREPARED_DATA_H_
