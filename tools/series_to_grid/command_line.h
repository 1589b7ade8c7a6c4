// The command line of series_to_grid.

#ifndef VELDMARK_SERIES_TO_GRID_COMMAND_LINE_H_
#define VELDMARK_SERIES_TO_GRID_COMMAND_LINE_H_

#include <span>
#include <string>
#include <string_view>

#include "series_to_grid/grid_writer.h"

namespace veldmark::series_to_grid {

// What a run is asked to do.
enum class Task { kExpand, kShowHelp, kShowVersion };

// The parsed command line.
//
//   output    name of the grid file
//   series    name of the series file; "-" is the standard input
struct Command {
  Task task = Task::kExpand;
  YearRange years;
  GridForm form;
  std::string output;
  std::string series = "-";
};

// Returns the text that --help shows.
std::string_view help_text();

// Returns the text that --version shows.
std::string_view version_text();

// Parses the arguments without the program's name. Options may be repeated; the last
// --years wins. Throws UsageError that names the invalid argument.
Command parse_command_line(std::span<const std::string> arguments);

}  // namespace veldmark::series_to_grid

#endif  // VELDMARK_SERIES_TO_GRID_COMMAND_LINE_H_
