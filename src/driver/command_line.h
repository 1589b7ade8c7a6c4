// The command line of the program. A session is controlled by answers on the console,
// so the only arguments are --help and --version.

#ifndef VELDMARK_DRIVER_COMMAND_LINE_H_
#define VELDMARK_DRIVER_COMMAND_LINE_H_

#include <optional>
#include <ostream>
#include <span>
#include <string>

namespace veldmark {

// Writes the help or version to `output`. For any other argument, even an empty one,
// writes the usage to `errors` and nothing to `output`.
//
//   arguments   without the program's name
//
// Returns the exit status: 0, 2 for wrong usage, 255 if `output` cannot be written.
// Returns nullopt if there are no arguments, and the session should start.
std::optional<int> answer_command_line(std::span<const std::string> arguments,
                                       std::ostream& output, std::ostream& errors);

}  // namespace veldmark

#endif  // VELDMARK_DRIVER_COMMAND_LINE_H_
