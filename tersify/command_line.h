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
  kAskForList,  // ask for the name of a list file, then as kCondenseList
  kCondense,
  kCondenseList,
  kCheck,
  kShowHelp,
  kShowVersion,
};

// What to do.
//
//   names     the files to condense or check, or the list file alone
//   output    the name of the copy of the one file to condense; nullopt for the usual
//   one
struct Command {
  Task task = Task::kAskForList;
  std::vector<std::string> names;
  std::optional<std::string> output{};
};

// Returns the text that --help shows.
std::string_view help_text();

// Returns the text that --version shows.
std::string_view version_text();

// Reads the arguments, the program's name not among them. After "--" everything is a
// name. Throws UsageError that names the argument at fault.
Command parse_command_line(std::span<const std::string> arguments);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_COMMAND_LINE_H_
