#include "series_to_grid/series_to_grid.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "scratch_folder.h"
#include "series_to_grid/command_line.h"

namespace veldmark {
namespace {

// Two cells in the years 1901 and 1902: column 1 of row 1 counts 1..24, column 720 of
// row 360 counts 2001..2024.
const std::string kSeries =
    "lon,lat,1901-01,1901-02,1901-03,1901-04,1901-05,1901-06,1901-07,1901-08,1901-09,"
    "1901-10,1901-11,1901-12,1902-01,1902-02,1902-03,1902-04,1902-05,1902-06,1902-07,"
    "1902-08,1902-09,1902-10,1902-11,1902-12\n"
    "-179.75,-89.75,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21,22,23,24\n"
    "179.75,89.75,2001,2002,2003,2004,2005,2006,2007,2008,2009,2010,2011,2012,2013,"
    "2014,"
    "2015,2016,2017,2018,2019,2020,2021,2022,2023,2024\n";

struct Outcome {
  int status = -1;
  std::string output;
  std::string messages;
};

Outcome run(const std::vector<std::string>& arguments, const std::string& input,
            bool show_progress = false, FileCalls calls = system_file_calls()) {
  std::istringstream in(input);
  std::ostringstream out;
  std::ostringstream messages;
  Surroundings around{.input = in,
                      .output = out,
                      .messages = messages,
                      .show_progress = show_progress,
                      .calls = calls};
  const int status = run_series_to_grid(arguments, around);
  return {status, out.str(), messages.str()};
}

std::string repeated(int times, const std::string& text) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

// Compares a whole grid file: `lines` tells the lines (counted from 1) that hold
// values; all others are `empty_line`.
void expect_grid(const std::string& grid, int line_count, const std::string& empty_line,
                 const std::map<int, std::string>& lines) {
  const std::size_t length = empty_line.size();
  ASSERT_EQ(grid.size(), length * static_cast<std::size_t>(line_count));
  for (int number = 1; number <= line_count; ++number) {
    const auto listed = lines.find(number);
    ASSERT_EQ(grid.substr(static_cast<std::size_t>(number - 1) * length, length),
              listed == lines.end() ? empty_line : listed->second)
        << "line " << number;
  }
}

TEST(SeriesToGrid, ACondensedFileHasEachValueOnTheLineOfItsYearMonthAndRow) {
  const ScratchFolder folder;
  const Outcome result = run({"--years", "1901-1902", folder.file("grid")}, kSeries);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.messages,
            "series_to_grid: wrote " + folder.file("grid") +
                ": 2 cells, values in 24 of 24 months, 31112640 bytes\n");
  EXPECT_EQ(folder.names(), Names{"grid"});

  std::map<int, std::string> lines;
  for (int month = 0; month < 24; ++month) {
    const std::string south = std::to_string(1 + month);
    lines[month * 360 + 1] =
        std::string(5 - south.size(), ' ') + south + repeated(719, " -999") + "\n";
    lines[month * 360 + 360] =
        repeated(719, " -999") + " " + std::to_string(2001 + month) + "\n";
  }
  expect_grid(folder.get("grid"), 8640, repeated(720, " -999") + "\n", lines);
}

TEST(SeriesToGrid, OnlyTheYearsAskedHaveValues) {
  const ScratchFolder folder;
  const Outcome result = run({"--years", "1902-1902", folder.file("grid")}, kSeries);
  EXPECT_EQ(result.messages,
            "series_to_grid: wrote " + folder.file("grid") +
                ": 2 cells, values in 12 of 24 months, 31112640 bytes\n");
  std::map<int, std::string> lines;
  for (int month = 12; month < 24; ++month) {
    lines[month * 360 + 1] =
        "   " + std::to_string(1 + month) + repeated(719, " -999") + "\n";
    lines[month * 360 + 360] =
        repeated(719, " -999") + " " + std::to_string(2001 + month) + "\n";
  }
  expect_grid(folder.get("grid"), 8640, repeated(720, " -999") + "\n", lines);
}

TEST(SeriesToGrid, TheScpdsiFileRunsNorthToSouth) {
  const ScratchFolder folder;
  run({"--scpdsi", "--years", "1901-1901", folder.file("grid")}, kSeries);
  std::map<int, std::string> lines;
  for (int month = 0; month < 12; ++month) {
    const std::string south = std::to_string(1 + month);
    lines[month * 360 + 1] =
        repeated(719, "-9999") + " " + std::to_string(2001 + month) + "\n";
    lines[month * 360 + 360] =
        std::string(5 - south.size(), ' ') + south + repeated(719, "-9999") + "\n";
  }
  expect_grid(folder.get("grid"), 4320, repeated(720, "-9999") + "\n", lines);
}

TEST(SeriesToGrid, ThePublishedFileHasSixColumnsForEachNumber) {
  const ScratchFolder folder;
  const Outcome result =
      run({"--published", "--years", "1901-1901", folder.file("grid")}, kSeries);
  EXPECT_EQ(result.messages,
            "series_to_grid: wrote " + folder.file("grid") +
                ": 2 cells, values in 12 of 12 months, 18666720 bytes\n");
  std::map<int, std::string> lines;
  for (int month = 0; month < 12; ++month) {
    const std::string south = std::to_string(1 + month);
    lines[month * 360 + 1] =
        std::string(6 - south.size(), ' ') + south + repeated(719, "  -999") + "\n";
    lines[month * 360 + 360] =
        repeated(719, "  -999") + "  " + std::to_string(2001 + month) + "\n";
  }
  expect_grid(folder.get("grid"), 4320, repeated(720, "  -999") + "\n", lines);
}

TEST(SeriesToGrid, ANamedSeriesGivesTheSameFileAsStandardInput) {
  const ScratchFolder folder;
  folder.put("series.csv", kSeries);
  run({"--years", "1901-1901", folder.file("a")}, kSeries);
  const Outcome result = run(
      {"--years", "1901-1901", folder.file("b"), folder.file("series.csv")}, "unread");
  EXPECT_EQ(result.status, 0);
  EXPECT_TRUE(folder.get("a") == folder.get("b"));
  EXPECT_EQ(folder.get("a").size(), 15556320U);
}

TEST(SeriesToGrid, YearsThatTheSeriesLacksAreNoted) {
  const ScratchFolder folder;
  const Outcome result = run({"--years", "1902-1903", folder.file("grid")}, kSeries);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(
      result.messages,
      "series_to_grid: note: the series covers 1901-1902; other years of 1902-1903 "
      "are missing\n"
      "series_to_grid: wrote " +
          folder.file("grid") +
          ": 2 cells, values in 12 of 36 months, 46668960 bytes\n");
}

TEST(SeriesToGrid, ASeriesThatBeginsLateIsNotedAndFillsItsMonthsOnly) {
  const ScratchFolder folder;
  const std::string series =
      "lon,lat,1902-01,1902-02,1902-03,1902-04,1902-05,1902-06,1902-07,1902-08,1902-09,"
      "1902-10,1902-11,1902-12\n0.25,0.25,1,2,3,4,5,6,7,8,9,10,11,12\n";
  const Outcome result = run({"--years", "1901-1902", folder.file("grid")}, series);
  EXPECT_EQ(
      result.messages,
      "series_to_grid: note: the series covers 1902-1902; other years of 1901-1902 "
      "are missing\n"
      "series_to_grid: wrote " +
          folder.file("grid") +
          ": 1 cells, values in 12 of 24 months, 31112640 bytes\n");
}

TEST(SeriesToGrid, ASeriesOfOtherYearsFillsNoMonth) {
  const ScratchFolder folder;
  const std::string series =
      "lon,lat,1899-01,1899-02,1899-03,1899-04,1899-05,1899-06,1899-07,1899-08,1899-09,"
      "1899-10,1899-11,1899-12\n0.25,0.25,1,2,3,4,5,6,7,8,9,10,11,12\n";
  const Outcome result = run({"--years", "1901-1901", folder.file("grid")}, series);
  EXPECT_EQ(
      result.messages,
      "series_to_grid: note: the series covers 1899-1899; other years of 1901-1901 "
      "are missing\n"
      "series_to_grid: wrote " +
          folder.file("grid") +
          ": 1 cells, values in 0 of 12 months, 15556320 bytes\n");
}

TEST(SeriesToGrid, AFaultInTheSeriesIsReportedAndNoFileIsTouched) {
  const ScratchFolder folder;
  folder.put("grid", "earlier");
  const Outcome result = run({folder.file("grid")}, kSeries + "0.25,0.25,1\n");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.messages,
            "series_to_grid: line 4: found 3 fields, expected 26: longitude, latitude "
            "and 24 values\n");
  EXPECT_EQ(folder.names(), Names{"grid"});
  EXPECT_EQ(folder.get("grid"), "earlier");
}

TEST(SeriesToGrid, ASeriesThatCannotBeOpenedIsReported) {
  const ScratchFolder folder;
  const std::string series = folder.file("missing.csv");
  const Outcome result = run({folder.file("grid"), series}, "");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.messages,
            "series_to_grid: cannot open " + series + ": No such file or directory\n");
  EXPECT_EQ(folder.names(), Names{});
}

TEST(SeriesToGrid, AFolderIsNotASeries) {
  const ScratchFolder folder;
  std::filesystem::create_directory(folder.file("series"));
  const Outcome result = run({folder.file("grid"), folder.file("series")}, "");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.messages, "series_to_grid: line 1: the input cannot be read\n");
  EXPECT_EQ(folder.names(), Names{"series"});
}

TEST(SeriesToGrid, TheSeriesItselfIsNotOverwritten) {
  const ScratchFolder folder;
  folder.put("series.csv", kSeries);
  const std::string name = folder.file("series.csv");
  const Outcome result =
      run({"--years", "1901-1901", name, folder.file("./series.csv")}, "");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.messages,
            "series_to_grid: " + name + " is the series itself; name another output\n");
  EXPECT_TRUE(folder.get("series.csv") == kSeries);
}

TEST(SeriesToGrid, AnOutputThatCannotBeMadeIsReported) {
  const ScratchFolder folder;
  const std::string name = folder.file("nowhere/grid");
  const Outcome result = run({name}, kSeries);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(
      result.messages,
      "series_to_grid: note: the series covers 1901-1902; other years of 1901-2016 "
      "are missing\n"
      "series_to_grid: cannot write " +
          name + ".part: No such file or directory\n");
}

TEST(SeriesToGrid, AFileThatGrowsOverTheSizeLimitIsRemoved) {
  const ScratchFolder folder;
  folder.put("grid", "earlier");
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  rlimit small = before;
  small.rlim_cur = 2000000;  // in the second month
  setrlimit(RLIMIT_FSIZE, &small);
  const Outcome result = run({"--years", "1901-1901", folder.file("grid")}, kSeries);
  setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.messages, "series_to_grid: cannot write " + folder.file("grid") +
                                 ".part: File too large\n");
  EXPECT_EQ(folder.names(), Names{"grid"});
  EXPECT_EQ(folder.get("grid"), "earlier");
}

TEST(SeriesToGrid, AFailedCloseIsNotCalledWritten) {
  const ScratchFolder folder;
  FileCalls calls = system_file_calls();
  calls.close = [](int descriptor) {
    ::close(descriptor);
    errno = ENOSPC;
    return -1;
  };
  const Outcome result =
      run({"--years", "1901-1901", folder.file("grid")}, kSeries, false, calls);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.messages, "series_to_grid: cannot write " + folder.file("grid") +
                                 ".part: No space left on device\n");
  EXPECT_EQ(folder.names(), Names{});
}

TEST(SeriesToGrid, AnInterruptedRunLeavesNothing) {
  const ScratchFolder folder;
  FileCalls calls = system_file_calls();
  calls.write = [](int descriptor, const void* text, std::size_t size) {
    std::raise(SIGINT);
    return ::write(descriptor, text, size);
  };
  const Outcome result =
      run({"--years", "1901-1901", folder.file("grid")}, kSeries, false, calls);
  EXPECT_EQ(result.status, 130);
  EXPECT_EQ(result.messages, "series_to_grid: interrupted; nothing was written\n");
  EXPECT_EQ(folder.names(), Names{});
}

TEST(SeriesToGrid, ProgressIsShownInPlaceAndErasedAtTheEnd) {
  const ScratchFolder folder;
  const Outcome result = run({"--years", "1901-1901", folder.file("grid")}, kSeries,
                             /*show_progress=*/true);
  std::string expected;
  for (const int percent : {8, 16, 25, 33, 41, 50, 58, 66, 75, 83, 91, 100}) {
    expected += "\rseries_to_grid: " + std::to_string(percent) + " % written";
  }
  EXPECT_EQ(result.messages,
            expected + "\r\x1b[K" + "series_to_grid: wrote " + folder.file("grid") +
                ": 2 cells, values in 12 of 12 months, 15556320 bytes\n");
}

TEST(SeriesToGrid, EachPercentIsShownOnce) {
  const ScratchFolder folder;
  FileCalls calls = system_file_calls();
  calls.write = [](int, const void*, std::size_t size) {
    return static_cast<ssize_t>(size);
  };
  const Outcome result =
      run({folder.file("grid")}, kSeries, /*show_progress=*/true, calls);
  const auto shown = std::count(result.messages.begin(), result.messages.end(), '%');
  EXPECT_EQ(shown, 101);
}

TEST(SeriesToGrid, ProgressIsErasedBeforeAnErrorIsReported) {
  const ScratchFolder folder;
  FileCalls calls = system_file_calls();
  calls.close = [](int descriptor) {
    ::close(descriptor);
    errno = EIO;
    return -1;
  };
  const Outcome result =
      run({"--years", "1901-1901", folder.file("grid")}, kSeries, true, calls);
  const std::string end = "\r\x1b[Kseries_to_grid: cannot write " +
                          folder.file("grid") + ".part: Input/output error\n";
  ASSERT_GE(result.messages.size(), end.size());
  EXPECT_EQ(result.messages.substr(result.messages.size() - end.size()), end);
}

TEST(SeriesToGrid, HelpGoesToStandardOutput) {
  const Outcome result = run({"--help"}, "");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output, help_text());
  EXPECT_EQ(result.messages, "");
}

TEST(SeriesToGrid, AWrongCommandLineHasStatusTwo) {
  const Outcome result = run({}, "");
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.messages,
            "series_to_grid: the name of the output file is missing\n"
            "Try 'series_to_grid --help' for more information.\n");
}

// The built program, through a shell.
Outcome run_program(const ScratchFolder& folder, const std::string& arguments) {
  const std::string command = std::string("'") + SERIES_TO_GRID_PROGRAM + "' " +
                              arguments + " >'" + folder.file("out") + "' 2>'" +
                              folder.file("err") + "'";
  const int status = std::system(command.c_str());
  return {WEXITSTATUS(status), folder.get("out"), folder.get("err")};
}

TEST(SeriesToGridProgram, ItReadsStandardInputAndIsSilentAboutProgressInAFile) {
  const ScratchFolder folder;
  folder.put("series.csv", kSeries);
  const Outcome result =
      run_program(folder, "--years 1901-1901 '" + folder.file("grid") + "' - <'" +
                              folder.file("series.csv") + "'");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.messages,
            "series_to_grid: wrote " + folder.file("grid") +
                ": 2 cells, values in 12 of 12 months, 15556320 bytes\n");
  run({"--years", "1901-1901", folder.file("same")}, kSeries);
  EXPECT_TRUE(folder.get("grid") == folder.get("same"));
}

TEST(SeriesToGridProgram, ItsExitStatusTellsTheKindOfError) {
  const ScratchFolder folder;
  EXPECT_EQ(run_program(folder, "--help").status, 0);
  EXPECT_EQ(run_program(folder, "'" + folder.file("grid") + "' </dev/null").status, 1);
  EXPECT_EQ(run_program(folder, "--wrong").status, 2);
}

}  // namespace
}  // namespace veldmark
