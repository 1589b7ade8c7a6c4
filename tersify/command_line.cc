#include "tersify/command_line.h"

#include <optional>

#include "tersify/grid_shape.h"
#include "util/failure.h"
#include "util/in_quotes.h"

namespace veldmark::tersify {
namespace {

static_assert(GridShape{}.years == 116 && GridShape{}.rows == 360,
              "the help text names what a whole file holds");

std::optional<Task> task_of(std::string_view option) {
  if (option == "--help") {
    return Task::kShowHelp;
  }
  if (option == "--version") {
    return Task::kShowVersion;
  }
  if (option == "--list") {
    return Task::kCondenseList;
  }
  if (option == "--check") {
    return Task::kCheck;
  }
  return std::nullopt;
}

// Throws UsageError when the task and the number of names do not fit.
void expect_names(const Command& command) {
  if (command.task == Task::kCondense && command.names.empty()) {
    throw UsageError("the names of the files are missing");
  }
  if (command.task == Task::kCheck && command.names.empty()) {
    throw UsageError("--check: the names of the files are missing");
  }
  if (command.task != Task::kCondenseList) {
    return;
  }
  if (command.names.empty()) {
    throw UsageError("--list: the list file is missing");
  }
  if (command.names.size() > 1) {
    throw UsageError("unexpected argument " + in_quotes(command.names[1]));
  }
}

}  // namespace

std::string_view help_text() {
  return R"(Usage: tersify [FILE]...
       tersify --list LISTFILE
       tersify --check FILE.new...

Makes condensed copies of published CRU TS grid files for veldmark: FILE.new beside
FILE. A published line holds 720 integers with blanks or tabs between them; a condensed
one holds them right-aligned in five columns each. The values stay what they are.

Without arguments tersify asks for the name of a list file: the names of the files to
condense, one a line.

  --list LISTFILE  condense the files that LISTFILE names
  --check          read condensed files and tell whether each is complete (116 years of
                   12 months of 360 lines), or where its first fault is
  --help           show this text
  --version        show the version

A file at fault is named with line and field; its copy is not made, an earlier copy
stays, and the other files are condensed all the same. Compressed files must be
decompressed first. A whole copy takes 1.8 GB.

Exit status: 0 when all is well, 1 when a file failed, 2 for a wrong command line, 128
and the signal's number when interrupted.
)";
}

std::string_view version_text() { return "tersify (veldmark) " VELDMARK_VERSION "\n"; }

Command parse_command_line(std::span<const std::string> arguments) {
  Command command;
  std::optional<Task> task;
  bool only_names = false;
  for (const std::string& argument : arguments) {
    if (only_names || argument.size() < 2 || argument.front() != '-') {
      command.names.push_back(argument);
    } else if (argument == "--") {
      only_names = true;
    } else {
      const std::optional<Task> found = task_of(argument);
      if (!found) {
        throw UsageError("unknown option " + in_quotes(argument));
      }
      if (found == Task::kShowHelp || found == Task::kShowVersion) return {*found, {}};
      if (task && task != found) {
        throw UsageError("--list and --check exclude each other");
      }
      task = found;
    }
  }
  if (!task && !arguments.empty()) {
    task = Task::kCondense;
  }
  command.task = task.value_or(Task::kAskForList);
  expect_names(command);
  return command;
}

}  // namespace veldmark::tersify
