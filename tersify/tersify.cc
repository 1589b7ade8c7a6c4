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

using companion::Inputs;
using companion::kAllIsWell;
using companion::kEndedBySignal;
using companion::kFailed;
using companion::Surroundings;
using Names = std::vector<std::string>;

constexpr std::string_view kProgram = "tersify";

std::ostream& complain(const Surroundings& around) {
  return companion::complain(around, kProgram);
}

std::string quoted_names(const Names& names) {
  std::string text;
  for (const std::string& name : names) {
    text += (text.empty() ? "" : ", ") + in_quotes(name);
  }
  return text;
}

// A run over some files.
class Condensing {
 public:
  //   output    the copy's name where there is one file; nullopt for the usual names
  Condensing(const Surroundings& around, const Settings& settings, Names names,
             Inputs inputs, std::optional<std::string> output = std::nullopt)
      : around_(around),
        settings_(settings),
        names_(std::move(names)),
        inputs_(std::move(inputs)),
        output_(std::move(output)) {
    for (const std::string& name : names_) {
      inputs_.add(in_quotes(name), regular_file(name));
    }
  }

  // Condenses them all. Returns the exit status.
  int run() {
    const InterruptWatch watch;
    int status = kAllIsWell;
    for (std::size_t i = 0; i < names_.size(); ++i) {
      try {
        condense(names_[i]);
      } catch (const Interrupted& interrupted) {
        complain(around_) << "interrupted\n";
        not_done_.insert(not_done_.end(),
                         names_.begin() + static_cast<std::ptrdiff_t>(i), names_.end());
        status = kEndedBySignal + interrupted.signal;
        break;
      }
    }
    sum_up();
    return status == kAllIsWell && !not_done_.empty() ? kFailed : status;
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
            .screen = around_.messages,
            .inputs = std::move(inputs)};
  }

  // Condenses one file and says so, or says why not.
  void condense(const std::string& name) {
    try {
      const Condensed done = condense_file(job_for(name));
      sources_[done.output] = name;
      around_.output << "wrote " << in_quotes(done.output) << ": " << done.lines
                     << " lines, " << done.size_before << " bytes before, "
                     << done.size_after << " after\n";
      note_oddities(name, done);
      around_.output << std::flush;
    } catch (const Failure& error) {
      complain(around_) << error.what() << "\n";
      not_done_.push_back(name);
    } catch (const std::bad_alloc& error) {
      complain(around_) << in_quotes(name) << ": " << reason_of(error) << "\n";
      not_done_.push_back(name);
    }
  }

  // What a user should know about a copy that has been made.
  void note_oddities(const std::string& name, const Condensed& done) const {
    for (const std::string& warning : done.warnings) {
      complain(around_) << warning << "\n";
    }
    note_years(name, done.lines);
    if (!done.last_line_ended) {
      around_.output << "note: the last line of " << in_quotes(name)
                     << " has no line end; its last value may be cut\n";
    }
  }

  // A release of other years is as good as the usual one.
  void note_years(const std::string& name, std::int64_t lines) const {
    const GridShape shape = shape_by_name(name, settings_.shape);
    const std::optional<std::int32_t> years = whole_years(lines, shape);
    if (!years) {
      around_.output << "note: " << in_quotes(name) << " holds " << lines
                     << " lines; a whole file holds " << shape.line_count() << "\n";
    } else if (const auto warning = other_years_warning(name, *years)) {
      around_.output << "warning: " << in_quotes(name) << ": " << *warning << "\n";
    } else if (*years != shape.years) {
      around_.output << "note: " << in_quotes(name) << " holds "
                     << years_text(shape.first_year, *years) << "\n";
    }
  }

  // Says at the end what was done and what was not; one good file has been spoken of.
  void sum_up() const {
    if (names_.size() > 1) {
      around_.output << "condensed " << names_.size() - not_done_.size() << " of "
                     << names_.size() << " files\n";
    }
    if (!not_done_.empty()) {
      complain(around_) << "not condensed: " << quoted_names(not_done_) << "\n";
    }
  }

  const Surroundings& around_;
  const Settings& settings_;
  Names names_;
  Inputs inputs_;
  std::optional<std::string> output_;
  std::map<std::string, std::string> sources_;  // copy's name -> its input's name
  Names not_done_;
};

int condense_list(const std::string& list, Inputs inputs, const Surroundings& around,
                  const Settings& settings) {
  Names names = read_name_list(list);
  inputs.add(in_quotes(list), regular_file(list));
  return Condensing(around, settings, std::move(names), std::move(inputs)).run();
}

// Returns the exit status; warnings don't change it.
int check_all(const Names& names, const Surroundings& around, const GridShape& shape) {
  int status = kAllIsWell;
  for (const std::string& name : names) {
    try {
      const Verdict verdict = check_file(name, shape, around.messages);
      around.output << in_quotes(name) << ": "
                    << verdict.fault.value_or("complete: " + verdict.years) << "\n";
      for (const std::string& warning : verdict.warnings) {
        around.output << "warning: " << in_quotes(name) << ": " << warning << "\n";
      }
      around.output << std::flush;
      if (verdict.fault) {
        status = kFailed;
      }
    } catch (const Failure& error) {
      complain(around) << error.what() << "\n";
      status = kFailed;
    }
  }
  return status;
}

int carry_out(const Command& command, const Surroundings& around,
              const Settings& settings) {
  Inputs inputs;
  switch (command.task) {
    case Task::kShowHelp:
      around.output << help_text();
      return kAllIsWell;
    case Task::kShowVersion:
      around.output << version_text();
      return kAllIsWell;
    case Task::kCheck:
      return check_all(command.names, around, settings.shape);
    case Task::kCondenseList:
      return condense_list(command.names.front(), inputs, around, settings);
    case Task::kAskForList: {
      const std::string list = ask_for_list(around, inputs);
      return condense_list(list, inputs, around, settings);
    }
    case Task::kCondense:
      break;
  }
  return Condensing(around, settings, command.names, inputs, command.output).run();
}

}  // namespace

int run_tersify(companion::Arguments arguments, const Surroundings& around,
                const Settings& settings) {
  return companion::run_reported(around, kProgram, [&] {
    return carry_out(parse_command_line(arguments), around, settings);
  });
}

}  // namespace veldmark::tersify
