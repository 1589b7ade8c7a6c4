#include "series_to_grid/command_line.h"

#include <cstddef>
#include <vector>

#include "companion/digits.h"
#include "util/failure.h"
#include "util/in_quotes.h"

namespace veldmark::series_to_grid {
namespace {

constexpr std::int32_t kScpdsiMissing = -9999;

static_assert(kFirstDataYear == 1901 && kLastDataYear == 2016,
              "the help text states the years");

// Returns the years of the data, "1901-2016".
std::string data_years() {
  return std::to_string(kFirstDataYear) + "-" + std::to_string(kLastDataYear);
}

// Parses "FIRST-LAST", two years of four digits. Throws UsageError for any other form
// and for years outside the data.
YearRange parse_years(const std::string& text) {
  if (!companion::has_shape(text, "dddd-dddd")) {
    throw UsageError("--years: " + in_quotes(text) + " is not FIRST-LAST, as in " +
                     data_years());
  }
  const YearRange years{.first = companion::number_of(text.substr(0, 4)),
                        .last = companion::number_of(text.substr(5))};
  if (years.first > years.last) {
    throw UsageError("--years: " + text + " ends before it begins");
  }
  if (years.first < kFirstDataYear || years.last > kLastDataYear) {
    throw UsageError("--years: " + text + " is not within " + data_years());
  }
  return years;
}

}  // namespace

std::string_view help_text() {
  return R"(Usage: series_to_grid [OPTION]... OUTPUT [SERIES]

Expands a series file (monthly values of single grid cells) into a grid file of the
whole 0.5 degree grid. SERIES is read from standard input when it is absent or "-":

  zcat cru_ts4.01_tmp_1901_2016.csv.gz |
    series_to_grid --years 1901-1910 cru_ts4.01.1901.2016.tmp.dat.new

OUTPUT begins with January 1901 and ends with December of the last requested year. Cells
that SERIES does not list, and months outside the requested years, are missing (-999).
Rows run south to north. OUTPUT grows to 1.8 GB for 1901-2016 (15.6 MB a year).

  --years FIRST-LAST  years to take from SERIES, within 1901-2016 (default 1901-2016)
  --published         the layout as published: a blank and five columns for each
                      number (18.7 MB a year) instead of five columns
  --scpdsi            rows north to south, and -9999 for a missing value
  --help              show this text
  --version           show the version

Exit status: 0 when OUTPUT is complete, 1 when SERIES or OUTPUT is at fault, 2 for a
wrong command line, 128 and the signal's number when interrupted. Unless the status is
0 OUTPUT is left as it was.
)";
}

std::string_view version_text() {
  return "series_to_grid (veldmark) " VELDMARK_VERSION "\n";
}

Command parse_command_line(std::span<const std::string> arguments) {
  Command command;
  std::vector<std::string> names;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (argument == "--help" || argument == "--version") {
      command.task = argument == "--help" ? Task::kShowHelp : Task::kShowVersion;
      return command;
    }
    if (argument == "--years") {
      if (i + 1 == arguments.size()) {
        throw UsageError("--years: the years are missing");
      }
      command.years = parse_years(arguments[++i]);
    } else if (argument == "--published") {
      command.form.field_width = kPublishedField;
    } else if (argument == "--scpdsi") {
      command.form.north_first = true;
      command.form.MissingCode = kScpdsiMissing;
    } else if (argument.size() > 1 && argument.front() == '-') {
      throw UsageError("unknown option " + in_quotes(argument));
    } else {
      names.push_back(argument);
    }
  }
  if (names.empty()) {
    throw UsageError("the name of the output file is missing");
  }
  if (names.size() > 2) {
    throw UsageError("unexpected argument " + in_quotes(names[2]));
  }
  if (names[0].empty() || names[0] == "-") {
    throw UsageError("the output needs a name; it cannot be written to a pipe");
  }
  command.output = names[0];
  if (names.size() == 2) {
    command.series = names[1];
  }
  return command;
}

}  // namespace veldmark::series_to_grid
