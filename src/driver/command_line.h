// The command line of the program. The session asks for all it needs on the console, so
// that arguments only ask about the program itself.

#ifndef VELDMARK_DRIVER_COMMAND_LINE_H_
#define VELDMARK_DRIVER_COMMAND_LINE_H_

#include <optional>
#include <ostream>
#include <span>
#include <string>

namespace veldmark {

// Answers --help and --version on `output`; any other argument, an empty one too, gets
// the usage on `errors` and nothing on `output`.
//
//   arguments   without the program's name
//
// Returns the exit status: 0, 2 for wrong usage, 255 if `output` can't be written;
// nullopt when there are no arguments, and the session is to begin.
std::optional<int> answer_command_line(std::span<const std::string> arguments,
                                       std::ostream& output, std::ostream& errors);

}  // namespace veldmark

#endif  // VELDMARK_DRIVER_COMMAND_LINE_H_
