// The command line of series_to_grid.

#ifndef VELDMARK_SERIES_TO_GRID_COMMAND_LINE_H_
#define VELDMARK_SERIES_TO_GRID_COMMAND_LINE_H_

#include <span>
#include <string>
#include <string_view>

#include "series_to_grid/grid_writer.h"

namespace veldmark {

// What to do.
//
//   output    name of the grid file
//   series    name of the series file; "-" is the standard input
struct Command {
  bool help = false;
  YearRange years;
  GridForm form;
  std::string output;
  std::string series = "-";
};

// The text that --help shows.
std::string_view help_text();

// Reads the arguments, the program's name not among them. An option given twice counts
// once; of two spans of years the last one holds.
// Errors: UsageError that names the argument at fault.
Command parse_command_line(std::span<const std::string> arguments);

}  // namespace veldmark

#endif  // VELDMARK_SERIES_TO_GRID_COMMAND_LINE_H_
