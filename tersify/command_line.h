// The command line of tersify.

#ifndef VELDMARK_TERSIFY_COMMAND_LINE_H_
#define VELDMARK_TERSIFY_COMMAND_LINE_H_

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace veldmark::tersify {

// What a run is asked to do.
enum class Task {
  kAskForList,  // ask for the name of a list file, then do as kCondenseList
  kCondense,
  kCondenseList,
  kCheck,
  kShowHelp,
  kShowVersion,
};

// The parsed command line.
//
//   names     the files to condense or check, or the name of the list file
//   output    the name given by --output; nullopt for the default
struct Command {
  Task task = Task::kAskForList;
  std::vector<std::string> names;
  std::optional<std::string> output{};
};

// Returns the text that --help shows.
std::string_view help_text();

// Returns the text that --version shows.
std::string_view version_text();

// Parses the arguments without the program's name. After "--" every argument is a file
// name. Throws UsageError that names the invalid argument.
Command parse_command_line(std::span<const std::string> arguments);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_COMMAND_LINE_H_
