#include "series_to_grid/command_line.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "util/failure.h"

namespace veldmark {
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
  EXPECT_FALSE(command.help);
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

TEST(CommandLine, ScpdsiTurnsTheRowsAndChangesTheMissingCode) {
  const Command command = parse_command_line(Arguments{"--scpdsi", "out.dat"});
  EXPECT_TRUE(command.form.north_first);
  EXPECT_EQ(command.form.MissingCode, -9999);
  EXPECT_EQ(command.form.field_width, 5);
}

TEST(CommandLine, TheLastSpanOfYearsHolds) {
  const Command command = parse_command_line(
      Arguments{"--years", "1901-1902", "--years", "1999-2000", "out.dat"});
  EXPECT_EQ(command.years.first, 1999);
  EXPECT_EQ(command.years.last, 2000);
}

TEST(CommandLine, HelpNeedsNoNames) {
  EXPECT_TRUE(parse_command_line(Arguments{"--help"}).help);
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

TEST(CommandLine, MissingYearsAreNoticed) {
  expect_usage_error({"o", "--years"}, "--years: the years are missing");
}

TEST(CommandLine, AMissingOutputIsNoticed) {
  expect_usage_error({"--published"}, "the name of the output file is missing");
}

TEST(CommandLine, AThirdNameIsRefused) {
  expect_usage_error({"a", "b", "c"}, "unexpected argument 'c'");
}

TEST(CommandLine, AnUnknownOptionIsRefused) {
  expect_usage_error({"--publish", "o"}, "unknown option '--publish'");
}

TEST(CommandLine, TheOutputCannotBeAPipeOrNameless) {
  expect_usage_error({"-"}, "the output needs a name; it cannot be written to a pipe");
  expect_usage_error({"", "in.csv"},
                     "the output needs a name; it cannot be written to a pipe");
}

}  // namespace
}  // namespace veldmark
