// The years of a release, from a file's name and its number of lines.

#include "tersify/release_years.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>

#include "raw_text.h"
#include "run_in_process.h"
#include "support/temporary_folder.h"

namespace veldmark::tersify {
namespace {

using testing::condensed_line;
using testing::numbers;
using testing::Outcome;
using testing::raw_line;
using testing::repeated;
using testing::run;
using veldmark::testing::TemporaryFolder;
using veldmark::testing::write_file;

const std::string kRaw = raw_line(numbers()) + "\n";
const std::string kCondensed = condensed_line(numbers()) + "\n";

// One row, so that twelve lines are a year; two years unless the name gives others.
constexpr GridShape kTwoYears{.years = 2, .rows = 1};

TEST(WholeYears, AreOneAtLeast) {
  EXPECT_EQ(whole_years(535'680, {}), 124);
  EXPECT_EQ(whole_years(4320, {}), 1);
  EXPECT_EQ(whole_years(4319, {}), std::nullopt);
  EXPECT_EQ(whole_years(0, {}), std::nullopt);
}

// Returns the status and the messages of --check for a file of this many lines.
std::string check(const std::string& name, int lines, const std::string& more = "") {
  const TemporaryFolder folder;
  write_file(name, repeated(lines, kCondensed) + more);
  const Outcome result = run({"--check", name}, "", {.shape = kTwoYears});
  return std::to_string(result.status) + " " + result.output + result.messages;
}

TEST(CheckOfAnyRelease, SaysWhichYearsAFileHolds) {
  EXPECT_EQ(check("grid", 24), "0 'grid': complete: 2 years, 1901 to 1902\n");
  EXPECT_EQ(check("grid", 36), "0 'grid': complete: 3 years, 1901 to 1903\n");
  EXPECT_EQ(check("grid", 12), "0 'grid': complete: 1 year, 1901\n");
  EXPECT_EQ(check("a.2021.2023.b", 36),
            "0 'a.2021.2023.b': complete: 3 years, 2021 to 2023\n");
}

TEST(CheckOfAnyRelease, WarnsWhereTheNameSaysOtherYears) {
  EXPECT_EQ(check("a.1961.1962.b", 36),
            "0 'a.1961.1962.b': complete: 3 years, 1961 to 1963\n"
            "warning: 'a.1961.1962.b': its name says 1961 to 1962, and it holds 3 "
            "years\n");
}

// A file truncated between two years isn't a release of fewer years.
TEST(CheckOfAnyRelease, FewerYearsThanTheNameSaysAreAFault) {
  EXPECT_EQ(
      check("a.1961.1963.b", 24),
      "1 'a.1961.1963.b': the file ends after 24 of 36 lines; the next is line 25 "
      "(year 1963, January, row 1); its name says 3 years, and it holds 2\n");
  EXPECT_EQ(check("a.1961.1963.b", 0),
            "1 'a.1961.1963.b': the file ends after 0 of 36 lines; the next is line 1 "
            "(year 1961, January, row 1)\n");
}

TEST(CheckOfAnyRelease, WhatIsNotOfWholeYearsIsAtFault) {
  EXPECT_EQ(check("grid", 23),
            "1 'grid': the file ends after 23 of 24 lines; the next is line 24 (year "
            "1902, December, row 1)\n");
  EXPECT_EQ(check("grid", 11),
            "1 'grid': the file ends after 11 of 24 lines; the next is line 12 (year "
            "1901, December, row 1)\n");
  EXPECT_EQ(
      check("a.1961.1963.b", 25),
      "1 'a.1961.1963.b': the file ends after 25 of 36 lines; the next is line 26 "
      "(year 1963, February, row 1)\n");
  EXPECT_EQ(check("grid", 38),
            "1 'grid': the file ends after 38 of 48 lines; the next is line 39 (year "
            "1904, March, row 1)\n");
}

TEST(CheckOfAnyRelease, ALittleMoreThanTheYearsIsTooMuch) {
  const std::string too_many =
      "1 'grid': line 25: the file goes on after its last row, line 24 (year 1902, "
      "December, row 1)\n";
  EXPECT_EQ(check("grid", 25), too_many);
  EXPECT_EQ(check("grid", 35), too_many);
  EXPECT_EQ(check("grid", 30, "x\n"), too_many);
  EXPECT_EQ(check("grid", 35, "x\n"), too_many);
  EXPECT_EQ(check("grid", 36, "x\n"),
            "1 'grid': line 37 (year 1904, January, row 1), column 1: the line ends "
            "after 1 of 3600 characters\n");
}

// Returns the messages of condensing a file of this many lines, without "wrote ...".
std::string note(const std::string& name, int lines) {
  const TemporaryFolder folder;
  write_file(name, repeated(lines, kRaw));
  const Outcome result = run({name}, "", {.shape = kTwoYears});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.messages, "");
  return result.output.substr(result.output.find('\n') + 1);
}

TEST(CondensingAnyRelease, TellsWhatIsNotAsUsualOrNotAsTheNameSays) {
  EXPECT_EQ(note("grid", 24), "");
  EXPECT_EQ(note("a.1961.1963.b", 36), "");
  EXPECT_EQ(note("grid", 36), "note: 'grid' holds 3 years, 1901 to 1903\n");
  EXPECT_EQ(note("a.1961.1963.b", 24),
            "warning: 'a.1961.1963.b': its name says 1961 to 1963, and it holds 2 "
            "years\n");
  EXPECT_EQ(note("a.1961.1963.b", 25),
            "note: 'a.1961.1963.b' holds 25 lines; a whole file holds 36\n");
  EXPECT_EQ(note("grid", 25), "note: 'grid' holds 25 lines; a whole file holds 24\n");
}

}  // namespace
}  // namespace veldmark::tersify
