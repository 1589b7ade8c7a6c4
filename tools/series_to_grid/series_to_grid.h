// The whole program: arguments and a series in, a grid file out.

#ifndef VELDMARK_SERIES_TO_GRID_SERIES_TO_GRID_H_
#define VELDMARK_SERIES_TO_GRID_SERIES_TO_GRID_H_

#include "companion/run.h"

namespace veldmark::series_to_grid {

// Runs the program.
//
//   arguments    without the program's name
//   environment       the input is the series when no file is named; the output takes
//   the
//                help text, the messages notes, progress and the closing line
//
// Returns the exit status: 0 complete, 1 failure, 2 wrong command line, 128 and the
// signal's number when interrupted while writing. Unless it is 0, no file has been made
// or changed. What is thrown on the way becomes a message and a status.
int run_series_to_grid(companion::Arguments arguments,
                       const companion::Environment& environment);

}  // namespace veldmark::series_to_grid

#endif  // VELDMARK_SERIES_TO_GRID_SERIES_TO_GRID_H_
