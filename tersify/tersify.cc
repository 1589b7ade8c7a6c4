#include "tersify/tersify.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "tersify/check_file.h"
#include "tersify/command_line.h"
#include "tersify/name_list.h"
#include "util/failure.h"
#include "util/interrupt_watch.h"

namespace veldmark::tersify {
namespace {

constexpr std::string_view kProgram = "tersify: ";
constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;
constexpr int kEndedBySignal = 128;

using Names = std::span<const std::string>;

std::ostream& complain(const Surroundings& around) {
  around.output << std::flush;  // a terminal shows both in their order
  return around.messages.stream << kProgram;
}

// Asks for the list file. Errors: UsageError when there is no answer.
std::string ask_for_list(const Surroundings& around) {
  around.output << "\n Program Tersify\n\n"
                   " This program makes condensed copies of CRU TS data files.\n"
                   " Enter the name of the list file, a text file with one raw file \n"
                   " name/line.\n\n LIST FILE ==> "
                << std::flush;
  std::string answer;
  if (!std::getline(around.input, answer)) {
    around.output << "\n";
    throw UsageError("the input ended before a list file was named");
  }
  std::string name = trimmed_name(answer);
  if (name.empty()) throw UsageError("no list file was named");
  return name;
}

std::string list_of(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ", ") + name;
  return text;
}

// What a user should know about a copy that has been made.
void note_oddities(const std::string& name, const Condensed& done,
                   const Surroundings& around) {
  if (done.lines != around.shape.line_count()) {
    around.output << "note: " << name << " holds " << done.lines
                  << " lines; a whole file "
                  << "holds " << around.shape.line_count() << "\n";
  }
  if (!done.last_line_ended) {
    around.output << "note: the last line of " << name
                  << " has no line end; its last value may be cut\n";
  }
}

// Condenses one file and says so; false when it failed.
bool condense_one(const std::string& name, const Surroundings& around) {
  try {
    const Condensed done = condense_file(name, around.disk, around.messages);
    around.output << "wrote " << condensed_name(name) << ": " << done.lines
                  << " lines, " << done.size_before << " bytes before, "
                  << done.size_after << " after\n";
    note_oddities(name, done, around);
    around.output << std::flush;
    return true;
  } catch (const Failure& error) {
    complain(around) << error.what() << "\n";
    return false;
  } catch (const std::bad_alloc& error) {
    complain(around) << name << ": " << reason_of(error) << "\n";
    return false;
  }
}

// Says at the end what was done and what was not; one good file has been spoken of.
void sum_up(std::size_t count, const std::vector<std::string>& not_done,
            const Surroundings& around) {
  if (count > 1) {
    around.output << "condensed " << count - not_done.size() << " of " << count
                  << " files\n";
  }
  if (!not_done.empty()) {
    complain(around) << "not condensed: " << list_of(not_done) << "\n";
  }
}

int condense_all(Names names, const Surroundings& around) {
  const InterruptWatch watch;
  std::vector<std::string> not_done;
  for (std::size_t i = 0; i < names.size(); ++i) {
    try {
      if (!condense_one(names[i], around)) not_done.push_back(names[i]);
    } catch (const Interrupted&) {
      complain(around) << "interrupted\n";
      not_done.insert(not_done.end(), names.begin() + static_cast<std::ptrdiff_t>(i),
                      names.end());
      sum_up(names.size(), not_done, around);
      return kEndedBySignal + InterruptWatch::signal_caught();
    }
  }
  sum_up(names.size(), not_done, around);
  return not_done.empty() ? 0 : kFailed;
}

int check_all(Names names, const Surroundings& around) {
  int status = 0;
  for (const std::string& name : names) {
    try {
      const std::optional<std::string> fault =
          check_file(name, around.shape, around.messages);
      around.output << name << ": " << fault.value_or("complete") << "\n" << std::flush;
      if (fault) status = kFailed;
    } catch (const Failure& error) {
      complain(around) << error.what() << "\n";
      status = kFailed;
    }
  }
  return status;
}

int carry_out(const Command& command, const Surroundings& around) {
  switch (command.task) {
    case Task::kShowHelp:
      around.output << help_text();
      return 0;
    case Task::kShowVersion:
      around.output << version_text();
      return 0;
    case Task::kCheck:
      return check_all(command.names, around);
    case Task::kCondenseList:
      return condense_all(read_name_list(command.names.front()), around);
    case Task::kAskForList:
      return condense_all(read_name_list(ask_for_list(around)), around);
    case Task::kCondense:
      break;
  }
  return condense_all(command.names, around);
}

}  // namespace

int run_tersify(std::span<const std::string> arguments, Surroundings& around) {
  try {
    const int status = carry_out(parse_command_line(arguments), around);
    around.output << std::flush;
    if (around.output) return status;
    complain(around) << "cannot write the standard output\n";
    if (status != 0) return status;
  } catch (const UsageError& error) {
    complain(around) << error.what()
                     << "\nTry 'tersify --help' for more information.\n";
    return kWrongUsage;
  } catch (const std::exception& error) {
    complain(around) << reason_of(error) << "\n";
  }
  return kFailed;
}

}  // namespace veldmark::tersify
