// The whole program: arguments and a series in, a grid file out.

#ifndef VELDMARK_SERIES_TO_GRID_SERIES_TO_GRID_H_
#define VELDMARK_SERIES_TO_GRID_SERIES_TO_GRID_H_

#include <istream>
#include <ostream>
#include <span>
#include <string>

#include "util/part_file.h"

namespace veldmark {

// What the program is connected to.
//
//   input            the series when no file is named
//   output           takes the help text
//   messages         takes notes, errors, progress and the closing line
//   show_progress    true when `messages` is a terminal
struct Surroundings {
  std::istream& input;
  std::ostream& output;
  std::ostream& messages;
  bool show_progress = false;
  FileCalls calls = system_file_calls();
};

// Runs the program.
//
//   arguments    without the program's name
// Result     the exit status: 0 complete, 1 failure, 2 wrong command line, 128 and the
//            signal's number when interrupted while writing. Unless it is 0, no file
//            has been made or changed.
// Errors     none; they become a message and a status.
int run_series_to_grid(std::span<const std::string> arguments, Surroundings& around);

}  // namespace veldmark

#endif  // VELDMARK_SERIES_TO_GRID_SERIES_TO_GRID_H_
