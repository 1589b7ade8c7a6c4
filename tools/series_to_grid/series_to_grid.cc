#include "series_to_grid/series_to_grid.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

#include "series_to_grid/command_line.h"
#include "series_to_grid/grid_writer.h"
#include "series_to_grid/series_file.h"
#include "util/failure.h"
#include "util/interrupt_watch.h"

namespace veldmark {
namespace {

constexpr std::string_view kProgram = "series_to_grid: ";
constexpr int kFailed = 1;
constexpr int kWrongCommandLine = 2;
constexpr int kEndedBySignal = 128;

// Thrown between two months when a signal asks to stop.
struct Interrupted : std::exception {};

// The share done, on one line that is rewritten in place and gone at the end.
class ProgressLine {
 public:
  ProgressLine(std::ostream& screen, bool shown) : screen_(screen), shown_(shown) {}
  ~ProgressLine() {
    if (percent_ >= 0) screen_ << kBackToStart << kEraseLine << std::flush;
  }
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;
  ProgressLine(ProgressLine&&) = delete;
  ProgressLine& operator=(ProgressLine&&) = delete;

  void show(int done, int all) {
    const int percent = done * 100 / all;
    if (!shown_ || percent == percent_) return;
    percent_ = percent;
    screen_ << kBackToStart << kProgram << percent << " % written" << std::flush;
  }

 private:
  static constexpr std::string_view kBackToStart = "\r";
  static constexpr std::string_view kEraseLine = "\x1b[K";
  std::ostream& screen_;
  bool shown_;
  int percent_ = -1;
};

std::string years_text(int first, int last) {
  return std::to_string(first) + "-" + std::to_string(last);
}

// Errors: Failure when the file cannot be opened or is no series.
Series load_series(const std::string& name, std::istream& standard_input) {
  if (name == "-") return read_series(standard_input);
  std::ifstream file(name, std::ios::binary);
  if (!file) {
    throw Failure("cannot open " + name + ": " +
                  std::generic_category().message(errno));
  }
  return read_series(file);
}

// Says which of the years asked the series does not have.
void note_missing_years(const Series& series, const YearRange& asked,
                        std::ostream& messages) {
  if (series.first_year <= asked.first && asked.last <= series.last_year) return;
  messages << kProgram << "note: the series covers "
           << years_text(series.first_year, series.last_year) << "; other years of "
           << years_text(asked.first, asked.last) << " are missing\n";
}

// Number of months that get values.
int count_filled_months(const Series& series, const YearRange& asked) {
  const int first = std::max(series.first_year, asked.first);
  const int last = std::min(series.last_year, asked.last);
  return std::max(0, count_grid_months(last) - count_grid_months(first - 1));
}

// Result: the size of the file in bytes.
std::int64_t write_grid_file(const Series& series, const Command& command,
                             const Surroundings& around) {
  const int all_months = count_grid_months(command.years.last);
  int months_done = 0;
  PartFile file(command.output, around.calls);
  ProgressLine progress(around.messages, around.show_progress);
  make_grid(series, command.years, command.form, [&](std::string_view month) {
    if (InterruptWatch::signal_caught() != 0) throw Interrupted();
    file.write(month);
    progress.show(++months_done, all_months);
  });
  file.complete();
  return file.size();
}

void expand(const Command& command, const Surroundings& around) {
  std::error_code not_there;
  if (std::filesystem::equivalent(command.output, command.series, not_there)) {
    throw Failure(command.output + " is the series itself; name another output");
  }
  const Series series = load_series(command.series, around.input);
  note_missing_years(series, command.years, around.messages);
  const InterruptWatch watch;
  const std::int64_t bytes = write_grid_file(series, command, around);
  around.messages << kProgram << "wrote " << command.output << ": "
                  << series.cells.size() << " cells, values in "
                  << count_filled_months(series, command.years) << " of "
                  << count_grid_months(command.years.last) << " months, " << bytes
                  << " bytes\n";
}

}  // namespace

int run_series_to_grid(std::span<const std::string> arguments, Surroundings& around) {
  try {
    const Command command = parse_command_line(arguments);
    if (command.help) {
      around.output << help_text() << std::flush;
      if (!around.output) throw Failure("cannot write the standard output");
    } else {
      expand(command, around);
    }
    return 0;
  } catch (const UsageError& error) {
    around.messages << kProgram << error.what()
                    << "\nTry 'series_to_grid --help' for more information.\n";
    return kWrongCommandLine;
  } catch (const Interrupted&) {
    around.messages << kProgram << "interrupted; nothing was written\n";
    return kEndedBySignal + InterruptWatch::signal_caught();
  } catch (const std::exception& error) {
    around.messages << kProgram << reason_of(error) << "\n";
    return kFailed;
  }
}

}  // namespace veldmark
