#include "tersify/tersify.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "companion/inputs.h"
#include "tersify/ask_for_list.h"
#include "tersify/check_file.h"
#include "tersify/command_line.h"
#include "tersify/condense_file.h"
#include "tersify/name_list.h"
#include "tersify/release_years.h"
#include "util/failure.h"
#include "util/file_identity.h"
#include "util/in_quotes.h"
#include "util/interrupt_watch.h"

namespace veldmark::tersify {
namespace {

using companion::Environment;
using companion::Inputs;
using companion::kEndedBySignal;
using companion::kFailed;
using companion::kSuccess;
using Names = std::vector<std::string>;

constexpr std::string_view kProgram = "tersify";

std::ostream& start_message(const Environment& environment) {
  return companion::start_message(environment, kProgram);
}

std::string quoted_names(const Names& names) {
  std::string text;
  for (const std::string& name : names) {
    text += (text.empty() ? "" : ", ") + in_quotes(name);
  }
  return text;
}

// A run that condenses several files.
class Condensing {
 public:
  //   output    the copy's name if there is just one file; nullopt for the default
  //   names
  Condensing(const Environment& environment, const Settings& settings, Names names,
             Inputs inputs, std::optional<std::string> output = std::nullopt)
      : environment_(environment),
        settings_(settings),
        names_(std::move(names)),
        inputs_(std::move(inputs)),
        output_(std::move(output)) {
    for (const std::string& name : names_) {
      inputs_.add(in_quotes(name), regular_file(name));
    }
  }

  // Condenses all files. Returns the exit status.
  int run() {
    const InterruptWatch watch;
    int status = kSuccess;
    for (std::size_t i = 0; i < names_.size(); ++i) {
      try {
        condense(names_[i]);
      } catch (const Interrupted& interrupted) {
        start_message(environment_) << "interrupted\n";
        failed_.insert(failed_.end(), names_.begin() + static_cast<std::ptrdiff_t>(i),
                       names_.end());
        status = kEndedBySignal + interrupted.signal;
        break;
      }
    }
    print_summary();
    return status == kSuccess && !failed_.empty() ? kFailed : status;
  }

 private:
  // Two inputs can have one name for their copies: "a.dat" and "a.dat.gz", and all
  // netCDF files of the drought index. The second copy must not replace the first. A
  // file that is named twice only takes time.
  [[nodiscard]] CondenseJob job_for(const std::string& name) const {
    Inputs inputs = inputs_;
    for (const auto& [copy, source] : sources_) {
      if (source != name) {
        inputs.add("the copy of " + in_quotes(source), regular_file(copy));
      }
    }
    return {.name = name,
            .output = output_,
            .free_space = settings_.free_space,
            .screen = environment_.messages,
            .inputs = std::move(inputs)};
  }

  // Condenses one file and reports the result.
  void condense(const std::string& name) {
    try {
      const Condensed done = condense_file(job_for(name));
      sources_[done.output] = name;
      environment_.output << "wrote " << in_quotes(done.output) << ": " << done.lines
                          << " lines, " << done.size_before << " bytes before, "
                          << done.size_after << " after\n";
      print_warnings(name, done);
      environment_.output << std::flush;
    } catch (const Failure& error) {
      report_failure(name, error.what());
    } catch (const std::bad_alloc& error) {
      report_failure(name, in_quotes(name) + ": " + reason_of(error));
    }
  }

  void report_failure(const std::string& name, const std::string& message) {
    start_message(environment_) << message << "\n";
    failed_.push_back(name);
  }

  // Prints warnings and notes about a copy that has been made.
  void print_warnings(const std::string& name, const Condensed& done) const {
    for (const std::string& warning : done.warnings) {
      start_message(environment_) << warning << "\n";
    }
    note_years(name, done.lines);
    if (!done.last_line_ended) {
      environment_.output << "note: the last line of " << in_quotes(name)
                          << " has no line end; its last value may be cut\n";
    }
  }

  // Only a note: releases with other years than the default ones are fine.
  void note_years(const std::string& name, std::int64_t lines) const {
    const GridShape shape = shape_by_name(name, settings_.shape);
    const std::optional<std::int32_t> years = whole_years(lines, shape);
    if (!years) {
      environment_.output << "note: " << in_quotes(name) << " holds " << lines
                          << " lines; a whole file holds " << shape.line_count()
                          << "\n";
    } else if (const auto warning = other_years_warning(name, *years)) {
      environment_.output << "warning: " << in_quotes(name) << ": " << *warning << "\n";
    } else if (*years != shape.years) {
      environment_.output << "note: " << in_quotes(name) << " holds "
                          << years_text(shape.first_year, *years) << "\n";
    }
  }

  // Lists the failed files. A single file that was condensed needs no summary.
  void print_summary() const {
    if (names_.size() > 1) {
      environment_.output << "condensed " << names_.size() - failed_.size() << " of "
                          << names_.size() << " files\n";
    }
    if (!failed_.empty()) {
      start_message(environment_) << "not condensed: " << quoted_names(failed_) << "\n";
    }
  }

  const Environment& environment_;
  const Settings& settings_;
  Names names_;
  Inputs inputs_;
  std::optional<std::string> output_;
  std::map<std::string, std::string> sources_;  // copy's name -> its input's name
  Names failed_;
};

int condense_list(const std::string& list, Inputs inputs,
                  const Environment& environment, const Settings& settings) {
  Names names = read_name_list(list);
  inputs.add(in_quotes(list), regular_file(list));
  return Condensing(environment, settings, std::move(names), std::move(inputs)).run();
}

// Returns the exit status; warnings don't change it.
int check_all(const Names& names, const Environment& environment,
              const GridShape& shape) {
  int status = kSuccess;
  for (const std::string& name : names) {
    try {
      const Verdict verdict = check_file(name, shape, environment.messages);
      environment.output << in_quotes(name) << ": "
                         << verdict.fault.value_or("complete: " + verdict.years)
                         << "\n";
      for (const std::string& warning : verdict.warnings) {
        environment.output << "warning: " << in_quotes(name) << ": " << warning << "\n";
      }
      environment.output << std::flush;
      if (verdict.fault) {
        status = kFailed;
      }
    } catch (const Failure& error) {
      start_message(environment) << error.what() << "\n";
      status = kFailed;
    }
  }
  return status;
}

int run_command(const Command& command, const Environment& environment,
                const Settings& settings) {
  Inputs inputs;
  switch (command.task) {
    case Task::kShowHelp:
      environment.output << help_text();
      return kSuccess;
    case Task::kShowVersion:
      environment.output << version_text();
      return kSuccess;
    case Task::kAskForList: {
      const std::string list = ask_for_list(environment, inputs);
      return condense_list(list, inputs, environment, settings);
    }
    case Task::kCondenseList:
      return condense_list(command.names.front(), inputs, environment, settings);
    case Task::kCheck:
      return check_all(command.names, environment, settings.shape);
    case Task::kCondense:
      break;
  }
  return Condensing(environment, settings, command.names, inputs, command.output).run();
}

}  // namespace

int run_tersify(companion::Arguments arguments, const Environment& environment,
                const Settings& settings) {
  return companion::run_reported(environment, kProgram, [&] {
    return run_command(parse_command_line(arguments), environment, settings);
  });
}

}  // namespace veldmark::tersify
