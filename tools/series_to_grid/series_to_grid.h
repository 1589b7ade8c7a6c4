// The program as a function, so that tests can run it in memory.

#ifndef VELDMARK_SERIES_TO_GRID_SERIES_TO_GRID_H_
#define VELDMARK_SERIES_TO_GRID_SERIES_TO_GRID_H_

#include "companion/run.h"

namespace veldmark::series_to_grid {

// Runs the program.
//
//   arguments    without the program's name
//   environment  its input is the series if no file is named; its output receives the
//                help text, its messages receive notes, progress and the closing line
//
// Returns the exit status: 0 complete, 1 failure, 2 wrong command line, 128 plus the
// signal's number when interrupted while writing. Unless it is 0, no file has been made
// or changed. Exceptions are reported as messages and statuses.
int run_series_to_grid(companion::Arguments arguments,
                       const companion::Environment& environment);

}  // namespace veldmark::series_to_grid

#endif  // VELDMARK_SERIES_TO_GRID_SERIES_TO_GRID_H_
