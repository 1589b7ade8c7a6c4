#include "series_to_grid/series_to_grid.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "companion/input_file.h"
#include "companion/inputs.h"
#include "series_to_grid/command_line.h"
#include "series_to_grid/grid_writer.h"
#include "series_to_grid/series_file.h"
#include "util/in_quotes.h"
#include "util/interrupt_watch.h"
#include "util/part_file.h"

namespace veldmark::series_to_grid {
namespace {

using companion::Environment;
using companion::InputFile;

constexpr std::string_view kProgram = "series_to_grid";

std::string years_text(std::int32_t first, std::int32_t last) {
  return std::to_string(first) + "-" + std::to_string(last);
}

InputFile open_series(const std::string& name, int standard_input) {
  if (name == "-") {
    return {standard_input, "the standard input"};
  }
  return {name, InputFile::Kind::kAny};
}

// Reads the series. Throws Failure if the output would overwrite it.
Series load_series(const Command& command, const Environment& environment) {
  const InputFile file = open_series(command.series, environment.input);
  companion::Inputs inputs;
  inputs.add(file.shown_name(), file.identity());
  inputs.require_not_an_input(command.output);
  return read_series(
      [&](char* buffer, std::size_t size) { return file.read(buffer, size); });
}

// Notes requested years that the series lacks.
void note_missing_years(const Series& series, const YearRange& requested,
                        const Environment& environment) {
  if (series.first_year <= requested.first && requested.last <= series.last_year) {
    return;
  }
  start_message(environment, kProgram)
      << "note: the series covers " << years_text(series.first_year, series.last_year)
      << "; other years of " << years_text(requested.first, requested.last)
      << " are missing\n";
}

// Returns the number of months that get values.
std::int32_t count_filled_months(const Series& series, const YearRange& requested) {
  const std::int32_t first = std::max(series.first_year, requested.first);
  const std::int32_t last = std::min(series.last_year, requested.last);
  return std::max(0, count_grid_months(last) - count_grid_months(first - 1));
}

// Writes the grid file. Returns its size in bytes.
std::int64_t write_grid_file(const Series& series, const Command& command,
                             const Environment& environment) {
  const InterruptWatch watch;
  PartFile file(command.output);
  companion::ProgressLine progress(
      environment.messages, in_quotes(command.output),
      count_grid_months(command.years.last) * month_size(command.form));
  make_grid(series, command.years, command.form, [&](std::string_view month) {
    InterruptWatch::throw_if_caught();
    file.write(month);
    progress.add(static_cast<std::int64_t>(month.size()));
  });
  file.complete();
  return file.size();
}

void expand(const Command& command, const Environment& environment) {
  const Series series = load_series(command, environment);
  note_missing_years(series, command.years, environment);
  const std::int64_t bytes = write_grid_file(series, command, environment);
  start_message(environment, kProgram)
      << "wrote " << in_quotes(command.output) << ": " << series.cells.size()
      << " cells, values in " << count_filled_months(series, command.years) << " of "
      << count_grid_months(command.years.last) << " months, " << bytes << " bytes\n";
}

}  // namespace

int run_series_to_grid(companion::Arguments arguments, const Environment& environment) {
  return companion::run_reported(environment, kProgram, [&] {
    const Command command = parse_command_line(arguments);
    if (command.task == Task::kExpand) {
      expand(command, environment);
    } else {
      environment.output << (command.task == Task::kShowHelp ? help_text()
                                                             : version_text());
    }
    return companion::kSuccess;
  });
}

}  // namespace veldmark::series_to_grid
