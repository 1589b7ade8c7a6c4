#include "tersify/command_line.h"

#include <optional>

#include "tersify/grid_shape.h"
#include "util/failure.h"
#include "util/in_quotes.h"

namespace veldmark::tersify {
namespace {

static_assert(GridShape{}.rows == 360,
              "the help text states the lines of a complete file");

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

// Throws UsageError if there are no names, or more than the task takes.
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

// Throws UsageError if --output is given for anything but one file to condense.
void expect_one_output(const Command& command) {
  if (!command.output) {
    return;
  }
  if (command.output->empty()) {
    throw UsageError("--output: the name is empty");
  }
  if (command.task != Task::kCondense || command.names.size() != 1) {
    throw UsageError("--output is for one file to condense");
  }
}

class Parser {
 public:
  explicit Parser(std::span<const std::string> arguments) : rest_(arguments) {}

  Command command() {
    const bool has_arguments = !rest_.empty();
    while (!rest_.empty() && !is_information_) {
      take_argument(take());
    }
    if (is_information_) return {*task_, {}};
    command_.task = task_.value_or(has_arguments ? Task::kCondense : Task::kAskForList);
    expect_names(command_);
    expect_one_output(command_);
    return command_;
  }

 private:
  const std::string& take() {
    const std::string& first = rest_.front();
    rest_ = rest_.subspan(1);
    return first;
  }

  void take_argument(const std::string& argument) {
    if (only_names_ || argument.size() < 2 || argument.front() != '-') {
      command_.names.push_back(argument);
    } else if (argument == "--") {
      only_names_ = true;
    } else if (argument == "--output") {
      take_output();
    } else {
      take_task(argument);
    }
  }

  void take_output() {
    if (rest_.empty()) {
      throw UsageError("--output: the name is missing");
    }
    if (command_.output) {
      throw UsageError("--output is given twice");
    }
    command_.output = take();
  }

  void take_task(const std::string& option) {
    const std::optional<Task> found = task_of(option);
    if (!found) {
      throw UsageError("unknown option " + in_quotes(option));
    }
    is_information_ = found == Task::kShowHelp || found == Task::kShowVersion;
    if (!is_information_ && task_ && task_ != found) {
      throw UsageError("--list and --check exclude each other");
    }
    task_ = found;
  }

  std::span<const std::string> rest_;
  Command command_;
  std::optional<Task> task_;
  bool only_names_ = false;
  bool is_information_ = false;  // --help or --version: ignore the rest
};

}  // namespace

std::string_view help_text() {
  return R"(Usage: tersify [FILE]...
       tersify --output NAME FILE
       tersify --list LISTFILE
       tersify --check FILE.new...

Makes condensed copies of published CRU TS grid files for veldmark, of any release.
The first bytes of a file show what it is:

  text (.dat)             720 integers a line, with blanks or tabs between them
  compressed (.dat.gz)    the same, read as downloaded; gzip only
  netCDF (.nc, .nc.gz)    floating-point values, converted back to integers

The copy of FILE is FILE.new beside it, without the .nc and .gz of its name. It holds
the numbers right-aligned in five columns each. The values don't change.

Without arguments tersify asks for the name of a list file: the names of the files to
condense, one a line.

  --output NAME    make the copy of the one FILE under another name
  --list LISTFILE  condense the files that LISTFILE names
  --check          check whether condensed files are complete (12 months of 360 lines for
                   each year); print each file's years or its first fault
  --help           show this text
  --version        show the version

A faulty file is reported with line and field; its copy is not made, an earlier copy
stays, and the other files are still condensed. A copy takes 15.6 MB for each
year, 1.8 GB for 1901-2016; a compressed netCDF file is decompressed beside it first.

Exit status: 0 on success, 1 when a file failed, 2 for a wrong command line, 128
plus the signal's number when interrupted.
)";
}

std::string_view version_text() { return "tersify (veldmark) " VELDMARK_VERSION "\n"; }

Command parse_command_line(std::span<const std::string> arguments) {
  return Parser(arguments).command();
}

}  // namespace veldmark::tersify
