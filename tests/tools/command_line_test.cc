#include "series_to_grid/command_line.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "util/failure.h"

namespace veldmark::series_to_grid {
namespace {

using Arguments = std::vector<std::string>;

void expect_usage_error(const Arguments& arguments, const std::string& message) {
  try {
    parse_command_line(arguments);
    ADD_FAILURE() << "accepted; expected: " << message;
  } catch (const UsageError& error) {
    EXPECT_EQ(error.what(), message);
  }
}

TEST(CommandLine, OneNameIsTheOutputAndTheSeriesComesFromStandardInput) {
  const Command command = parse_command_line(Arguments{"out.dat"});
  EXPECT_EQ(command.output, "out.dat");
  EXPECT_EQ(command.series, "-");
}

TEST(CommandLine, ASecondNameIsTheSeries) {
  const Command command = parse_command_line(Arguments{"out.dat", "in.csv"});
  EXPECT_EQ(command.output, "out.dat");
  EXPECT_EQ(command.series, "in.csv");
}

TEST(CommandLine, AHyphenAsSeriesIsStandardInput) {
  EXPECT_EQ(parse_command_line(Arguments{"out.dat", "-"}).series, "-");
}

TEST(CommandLine, WithoutOptionsTheGridIsCondensedSouthFirstAndHasAllYears) {
  const Command command = parse_command_line(Arguments{"out.dat"});
  EXPECT_EQ(command.task, Task::kExpand);
  EXPECT_EQ(command.years.first, 1901);
  EXPECT_EQ(command.years.last, 2016);
  EXPECT_EQ(command.form.field_width, 5);
  EXPECT_FALSE(command.form.north_first);
  EXPECT_EQ(command.form.MissingCode, -999);
}

TEST(CommandLine, OptionsMayStandBeforeAndAfterTheNames) {
  const Command command = parse_command_line(
      Arguments{"--published", "out.dat", "--years", "1950-1951", "in.csv"});
  EXPECT_EQ(command.form.field_width, 6);
  EXPECT_EQ(command.years.first, 1950);
  EXPECT_EQ(command.years.last, 1951);
  EXPECT_EQ(command.output, "out.dat");
  EXPECT_EQ(command.series, "in.csv");
}

TEST(CommandLine, ScpdsiReversesTheRowsAndChangesTheMissingCode) {
  const Command command = parse_command_line(Arguments{"--scpdsi", "out.dat"});
  EXPECT_TRUE(command.form.north_first);
  EXPECT_EQ(command.form.MissingCode, -9999);
  EXPECT_EQ(command.form.field_width, 5);
}

TEST(CommandLine, TheLastYearsOptionWins) {
  const Command command = parse_command_line(
      Arguments{"--years", "1901-1902", "--years", "1999-2000", "out.dat"});
  EXPECT_EQ(command.years.first, 1999);
  EXPECT_EQ(command.years.last, 2000);
}

TEST(CommandLine, HelpAndVersionNeedNoNames) {
  EXPECT_EQ(parse_command_line(Arguments{"--help"}).task, Task::kShowHelp);
  EXPECT_EQ(parse_command_line(Arguments{"--version"}).task, Task::kShowVersion);
}

TEST(CommandLine, TheFirstAndTheLastGridYearAreAccepted) {
  EXPECT_EQ(parse_command_line(Arguments{"--years", "1901-1901", "o"}).years.last,
            1901);
  EXPECT_EQ(parse_command_line(Arguments{"--years", "2016-2016", "o"}).years.first,
            2016);
}

TEST(CommandLine, YearsBeforeTheFirstGridYearAreRefused) {
  expect_usage_error({"--years", "1900-1901", "o"},
                     "--years: 1900-1901 is not within 1901-2016");
}

TEST(CommandLine, YearsAfterTheLastGridYearAreRefused) {
  expect_usage_error({"--years", "2016-2017", "o"},
                     "--years: 2016-2017 is not within 1901-2016");
}

TEST(CommandLine, YearsThatRunBackwardsAreRefused) {
  expect_usage_error({"--years", "1950-1949", "o"},
                     "--years: 1950-1949 ends before it begins");
}

TEST(CommandLine, YearsOfAnotherFormAreRefused) {
  for (const std::string text :
       {"", "1901", "1901-", "1901-19", "1901:1902", "1901-1902 ", " 1901-190",
        "1901-19021", "-901-1902", "1901-+902", "190x-1902"}) {
    expect_usage_error({"--years", text, "o"},
                       "--years: '" + text + "' is not FIRST-LAST, as in 1901-2016");
  }
}

TEST(CommandLine, MissingYearsAreRefused) {
  expect_usage_error({"o", "--years"}, "--years: the years are missing");
}

TEST(CommandLine, AMissingOutputIsRefused) {
  expect_usage_error({"--published"}, "the name of the output file is missing");
}

TEST(CommandLine, AThirdNameIsRefused) {
  expect_usage_error({"a", "b", "c"}, "unexpected argument 'c'");
}

TEST(CommandLine, AnUnknownOptionIsRefused) {
  expect_usage_error({"--publish", "o"}, "unknown option '--publish'");
}

TEST(CommandLine, TheVersionIsTheProjects) {
  EXPECT_EQ(version_text(), "series_to_grid (veldmark) " SERIES_TO_GRID_VERSION "\n");
}

TEST(CommandLine, TheHelpIsThisText) {
  EXPECT_EQ(help_text(),
            R"(Usage: series_to_grid [OPTION]... OUTPUT [SERIES]

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
)");
}

TEST(CommandLine, TheOutputCannotBeAPipeOrNameless) {
  expect_usage_error({"-"}, "the output needs a name; it cannot be written to a pipe");
  expect_usage_error({"", "in.csv"},
                     "the output needs a name; it cannot be written to a pipe");
}

}  // namespace
}  // namespace veldmark::series_to_grid
