#include "extract/run.h"

#include <sys/stat.h>

#include <chrono>
#include <exception>
#include <optional>
#include <system_error>
#include <vector>

#include "catalogue/variable_name.h"
#include "companion/inputs.h"
#include "extract/box_job.h"
#include "extract/citation.h"
#include "extract/command_line.h"
#include "extract/decimal_text.h"
#include "extract/input_file.h"
#include "extract/job.h"
#include "extract/netcdf_output.h"
#include "extract/output_names.h"
#include "extract/sites_job.h"
#include "util/failure.h"
#include "util/file_fault.h"
#include "util/file_identity.h"
#include "util/in_quotes.h"
#include "util/interrupt_watch.h"

namespace veldmark::extract {
namespace {

using companion::Environment;
using companion::kSuccess;

constexpr int kNothingFound = 3;

// Interrupted by a signal while series were written to standard output.
struct StandardOutputIncomplete : Interrupted {
  using Interrupted::Interrupted;
};

using TimePoint = std::chrono::steady_clock::time_point;

std::string seconds_since(TimePoint start) {
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
  return decimal_text(time.count(), 2);
}

// Before this year the standard calendar of netCDF is Julian.
constexpr std::int32_t kFirstGregorianYear = 1583;

Years choose_years(const Options& options, const InputFile& input) {
  const Years years = options.years.value_or(input.years);
  if (years.first < input.years.first || years.last > input.years.last) {
    throw UsageError("--years " + std::to_string(years.first) + ":" +
                     std::to_string(years.last) + ": " + in_quotes(input.name) +
                     " holds " + years_text(input.years));
  }
  if (options.format == Format::kNetcdf && years.first < kFirstGregorianYear) {
    throw UsageError("netcdf is written for years from 1583 on");
  }
  const std::optional<std::int32_t> test = options.variance_test;
  if (test && (*test <= years.first || *test > years.last)) {
    throw UsageError("--variance-test " + std::to_string(*test) +
                     ": the second period begins with this year, so it lies after " +
                     std::to_string(years.first) + " and not after " +
                     std::to_string(years.last));
  }
  return years;
}

// Returns the arguments as a shell command, each after a space and quoted if needed.
// Quotes inside an argument are not escaped.
std::string command_line(std::span<const std::string> arguments) {
  std::string text;
  for (const std::string& argument : arguments) {
    const bool plain =
        !argument.empty() && argument.find_first_of(" \t\n*?$&;") == std::string::npos;
    text += plain ? " " + argument : " '" + argument + "'";
  }
  return text;
}

std::optional<FileIdentity> identity_of(const FileDescriptor& file) {
  struct stat status {};
  return ::fstat(file.get(), &status) == 0 ? regular_file(status) : std::nullopt;
}

// Returns the summary.
std::string extract_series(const Job& job) {
  try {
    return job.options.sites ? extract_sites(job) : extract_box(job);
  } catch (const Interrupted& interrupted) {
    if (job.options.output) {
      throw;
    }
    throw StandardOutputIncomplete(interrupted.signal);
  }
}

int extract(const Options& options, std::span<const std::string> arguments,
            const Environment& environment) {
  if (options.format == Format::kNetcdf) {
    load_netcdf();
  }
  const InterruptWatch watch;
  const TimePoint start = std::chrono::steady_clock::now();
  const InputFile input = open_input(options);
  companion::Inputs inputs;
  inputs.add(in_quotes(input.name), identity_of(input.file));
  if (options.sites) {
    inputs.add(in_quotes(*options.sites), regular_file(*options.sites));
  }
  check_outputs(options, inputs);
  const Job job{.options = options,
                .input = input,
                .years = choose_years(options, input),
                .command_line = command_line(arguments),
                .environment = environment};
  if (!options.quiet && !options.longitude_note.empty()) {
    note(job, options.longitude_note);
  }
  const std::string summary = extract_series(job);
  if (!options.quiet) {
    note(job, std::string(input.entry.short_name) + " " + years_text(job.years) + ": " +
                  summary + " to " + output_title(options) + ", " +
                  seconds_since(start) + " s");
  }
  return kSuccess;
}

// Shows the citation of the input's data set, or of both data sets without an input.
int cite(const Options& options, const Environment& environment) {
  if (options.input.empty()) {
    environment.output << "CRU TS: " << citation_text(VariableCatalogue.front())
                       << "\n\n"
                       << "scPDSI: " << citation_text(VariableCatalogue.back()) << "\n";
    return kSuccess;
  }
  if (const VariableEntry* entry = find_by_short_name(options.input)) {
    environment.output << citation_text(*entry) << "\n";
    return kSuccess;
  }
  const VariableEntry* entry = options.variable ? find_by_short_name(*options.variable)
                                                : find_by_file_name(options.input);
  if (entry == nullptr) {
    throw UsageError(in_quotes(options.variable.value_or(options.input)) +
                     ": the variables are " + short_names());
  }
  environment.output << citation_of_file(*entry, options.input,
                                         companion::years_in_name(options.input))
                     << "\n";
  return kSuccess;
}

// Returns the message for a fault of the core, which only writes files here.
std::string fault_text(const FileFault& fault) {
  std::string reason = "another run is writing it";
  if (fault.kind() != FileFault::Kind::kWrittenByAnotherRun) {
    reason = std::generic_category().message(fault.error_number());
  }
  return "cannot write " + in_quotes(fault.name()) + ": " + reason;
}

int run_command(std::span<const std::string> arguments,
                const Environment& environment) {
  const Options options = parse_command_line(arguments);
  switch (options.task) {
    case Task::kShowHelp:
      environment.output << help_text();
      return kSuccess;
    case Task::kShowVersion:
      environment.output << version_text();
      return kSuccess;
    case Task::kCite:
      return cite(options, environment);
    case Task::kExtract:
      break;
  }
  return extract(options, arguments, environment);
}

}  // namespace

int run_extract(companion::Arguments arguments, const Environment& environment) {
  return companion::run_reported(environment, kProgram, [&] {
    try {
      return run_command(arguments, environment);
    } catch (const NothingFound& error) {
      companion::start_message(environment, kProgram) << error.what() << "\n";
      return kNothingFound;
    } catch (const StandardOutputIncomplete& interrupted) {
      companion::start_message(environment, kProgram)
          << "interrupted; what is on standard output is not complete\n";
      return companion::kEndedBySignal + interrupted.signal;
    } catch (const FileFault& fault) {
      throw Failure(fault_text(fault));
    }
  });
}

}  // namespace veldmark::extract
