#include "series_to_grid/series_to_grid.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "series_to_grid/command_line.h"
#include "support/child_process.h"
#include "support/memory_input.h"
#include "support/temporary_folder.h"

namespace veldmark::series_to_grid {
namespace {

using testing::ChildProcess;
using testing::file_content;
using testing::folder_content;
using testing::MemoryInput;
using testing::TemporaryFolder;
using testing::with_stopped_process;
using testing::write_file;
using Names = std::vector<std::string>;

// Returns the names of the folder's files in alphabetical order.
Names names() {
  Names found;
  for (const auto& [name, content] : folder_content()) {
    found.push_back(name);
  }
  return found;
}

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

Outcome run(const std::vector<std::string>& arguments, const std::string& input) {
  const MemoryInput in(input);
  std::ostringstream out;
  std::ostringstream messages;
  const companion::Environment environment{
      .input = in.descriptor(), .output = out, .messages = {.stream = messages}};
  const int status = run_series_to_grid(arguments, environment);
  return {status, out.str(), messages.str()};
}

// Runs the program on a terminal, with a clock that is read on each progress update.
Outcome run_on_terminal(const std::vector<std::string>& arguments,
                        const std::function<double()>& clock) {
  const MemoryInput in(kSeries);
  std::ostringstream out;
  std::ostringstream messages;
  const companion::Environment environment{
      .input = in.descriptor(),
      .output = out,
      .messages = {.stream = messages, .shown = true, .clock = clock}};
  const int status = run_series_to_grid(arguments, environment);
  return {status, out.str(), messages.str()};
}

std::string repeated(int times, const std::string& text) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

// Compares a whole grid file: `lines` gives the lines (counted from 1) with values; all
// others are `empty_line`.
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
  const TemporaryFolder folder;
  const Outcome result = run({"--years", "1901-1902", "grid"}, kSeries);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.messages,
            "series_to_grid: wrote 'grid': 2 cells, values in 24 of 24 months, "
            "31112640 bytes\n");
  EXPECT_EQ(names(), Names{"grid"});

  std::map<int, std::string> lines;
  for (int month = 0; month < 24; ++month) {
    const std::string south = std::to_string(1 + month);
    lines[month * 360 + 1] =
        std::string(5 - south.size(), ' ') + south + repeated(719, " -999") + "\n";
    lines[month * 360 + 360] =
        repeated(719, " -999") + " " + std::to_string(2001 + month) + "\n";
  }
  expect_grid(file_content("grid"), 8640, repeated(720, " -999") + "\n", lines);
}

TEST(SeriesToGrid, OnlyTheYearsAskedHaveValues) {
  const TemporaryFolder folder;
  const Outcome result = run({"--years", "1902-1902", "grid"}, kSeries);
  EXPECT_EQ(result.messages,
            "series_to_grid: wrote 'grid': 2 cells, values in 12 of 24 months, "
            "31112640 bytes\n");
  std::map<int, std::string> lines;
  for (int month = 12; month < 24; ++month) {
    lines[month * 360 + 1] =
        "   " + std::to_string(1 + month) + repeated(719, " -999") + "\n";
    lines[month * 360 + 360] =
        repeated(719, " -999") + " " + std::to_string(2001 + month) + "\n";
  }
  expect_grid(file_content("grid"), 8640, repeated(720, " -999") + "\n", lines);
}

TEST(SeriesToGrid, TheScpdsiFileRunsNorthToSouth) {
  const TemporaryFolder folder;
  run({"--scpdsi", "--years", "1901-1901", "grid"}, kSeries);
  std::map<int, std::string> lines;
  for (int month = 0; month < 12; ++month) {
    const std::string south = std::to_string(1 + month);
    lines[month * 360 + 1] =
        repeated(719, "-9999") + " " + std::to_string(2001 + month) + "\n";
    lines[month * 360 + 360] =
        std::string(5 - south.size(), ' ') + south + repeated(719, "-9999") + "\n";
  }
  expect_grid(file_content("grid"), 4320, repeated(720, "-9999") + "\n", lines);
}

TEST(SeriesToGrid, ThePublishedFileHasSixColumnsForEachNumber) {
  const TemporaryFolder folder;
  const Outcome result = run({"--published", "--years", "1901-1901", "grid"}, kSeries);
  EXPECT_EQ(result.messages,
            "series_to_grid: wrote 'grid': 2 cells, values in 12 of 12 months, "
            "18666720 bytes\n");
  std::map<int, std::string> lines;
  for (int month = 0; month < 12; ++month) {
    const std::string south = std::to_string(1 + month);
    lines[month * 360 + 1] =
        std::string(6 - south.size(), ' ') + south + repeated(719, "  -999") + "\n";
    lines[month * 360 + 360] =
        repeated(719, "  -999") + "  " + std::to_string(2001 + month) + "\n";
  }
  expect_grid(file_content("grid"), 4320, repeated(720, "  -999") + "\n", lines);
}

TEST(SeriesToGrid, ANamedSeriesGivesTheSameFileAsStandardInput) {
  const TemporaryFolder folder;
  write_file("series.csv", kSeries);
  run({"--years", "1901-1901", "a"}, kSeries);
  const Outcome result = run({"--years", "1901-1901", "b", "series.csv"}, "unread");
  EXPECT_EQ(result.status, 0);
  EXPECT_TRUE(file_content("a") == file_content("b"));
  EXPECT_EQ(file_content("a").size(), 15556320U);
}

TEST(SeriesToGrid, YearsThatTheSeriesLacksAreNoted) {
  const TemporaryFolder folder;
  const Outcome result = run({"--years", "1902-1903", "grid"}, kSeries);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(
      result.messages,
      "series_to_grid: note: the series covers 1901-1902; other years of 1902-1903 "
      "are missing\n"
      "series_to_grid: wrote 'grid\': 2 cells, values in 12 of 36 months, 46668960 "
      "bytes\n");
}

TEST(SeriesToGrid, ASeriesThatBeginsLateIsNotedAndFillsItsMonthsOnly) {
  const TemporaryFolder folder;
  const std::string series =
      "lon,lat,1902-01,1902-02,1902-03,1902-04,1902-05,1902-06,1902-07,1902-08,1902-09,"
      "1902-10,1902-11,1902-12\n0.25,0.25,1,2,3,4,5,6,7,8,9,10,11,12\n";
  const Outcome result = run({"--years", "1901-1902", "grid"}, series);
  EXPECT_EQ(
      result.messages,
      "series_to_grid: note: the series covers 1902-1902; other years of 1901-1902 "
      "are missing\n"
      "series_to_grid: wrote 'grid\': 1 cells, values in 12 of 24 months, 31112640 "
      "bytes\n");
}

TEST(SeriesToGrid, ASeriesOfOtherYearsFillsNoMonth) {
  const TemporaryFolder folder;
  const std::string series =
      "lon,lat,1899-01,1899-02,1899-03,1899-04,1899-05,1899-06,1899-07,1899-08,1899-09,"
      "1899-10,1899-11,1899-12\n0.25,0.25,1,2,3,4,5,6,7,8,9,10,11,12\n";
  const Outcome result = run({"--years", "1901-1901", "grid"}, series);
  EXPECT_EQ(
      result.messages,
      "series_to_grid: note: the series covers 1899-1899; other years of 1901-1901 "
      "are missing\n"
      "series_to_grid: wrote 'grid\': 1 cells, values in 0 of 12 months, 15556320 "
      "bytes\n");
}

TEST(SeriesToGrid, AFaultInTheSeriesIsReportedAndNoFileIsTouched) {
  const TemporaryFolder folder;
  write_file("grid", "earlier");
  const Outcome result = run({"grid"}, kSeries + "0.25,0.25,1\n");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.messages,
            "series_to_grid: line 4: found 3 fields, expected 26: longitude, latitude "
            "and 24 values\n");
  EXPECT_EQ(names(), Names{"grid"});
  EXPECT_EQ(file_content("grid"), "earlier");
}

TEST(SeriesToGrid, ASeriesThatCannotBeOpenedIsReported) {
  const TemporaryFolder folder;
  const Outcome result = run({"grid", "missing.csv"}, "");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.messages,
            "series_to_grid: cannot read 'missing.csv': No such file or directory\n");
  EXPECT_EQ(names(), Names{});
}

TEST(SeriesToGrid, AFolderIsNotASeries) {
  const TemporaryFolder folder;
  std::filesystem::create_directory("series");
  const Outcome result = run({"grid", "series"}, "");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.messages, "series_to_grid: cannot read 'series': Is a directory\n");
  EXPECT_EQ(names(), Names{"series"});
}

TEST(SeriesToGrid, ASeriesMayComeThroughANamedPipe) {
  const TemporaryFolder folder;
  ASSERT_EQ(::mkfifo("pipe", 0600), 0);
  std::thread writer([] { write_file("pipe", kSeries); });
  EXPECT_EQ(run({"--years", "1901-1901", "grid", "pipe"}, "").status, 0);
  writer.join();
}

// --- The series is not overwritten

TEST(SeriesToGrid, TheSeriesItselfIsNotOverwritten) {
  const TemporaryFolder folder;
  write_file("series.csv", kSeries);
  const Outcome result =
      run({"--years", "1901-1901", "series.csv", "./series.csv"}, "");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.messages,
            "series_to_grid: 'series.csv' is the same file as './series.csv'; nothing "
            "was written\n");
  EXPECT_TRUE(file_content("series.csv") == kSeries);
}

TEST(SeriesToGrid, ASeriesThatIsThePartOfTheOutputIsNotOverwritten) {
  const TemporaryFolder folder;
  write_file("grid.part", kSeries);
  const Outcome result = run({"--years", "1901-1901", "grid", "grid.part"}, "");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.messages,
            "series_to_grid: 'grid.part' is the same file as 'grid.part'; nothing was "
            "written\n");
  EXPECT_EQ(names(), Names{"grid.part"});
  EXPECT_TRUE(file_content("grid.part") == kSeries);
}

TEST(SeriesToGrid, AnOutputThatCannotBeMadeIsReported) {
  const TemporaryFolder folder;
  const Outcome result = run({"nowhere/grid"}, kSeries);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(
      result.messages,
      "series_to_grid: note: the series covers 1901-1902; other years of 1901-2016 "
      "are missing\n"
      "series_to_grid: cannot write 'nowhere/grid.part': No such file or directory\n");
}

TEST(SeriesToGrid, AFileThatGrowsOverTheSizeLimitIsRemoved) {
  const TemporaryFolder folder;
  write_file("grid", "earlier");
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  rlimit small = before;
  small.rlim_cur = 2000000;  // in the second month
  setrlimit(RLIMIT_FSIZE, &small);
  const Outcome result = run({"--years", "1901-1901", "grid"}, kSeries);
  setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.messages,
            "series_to_grid: cannot write 'grid.part': File too large\n");
  EXPECT_EQ(names(), Names{"grid"});
  EXPECT_EQ(file_content("grid"), "earlier");
}

TEST(SeriesToGrid, AnInterruptedRunLeavesNothing) {
  const TemporaryFolder folder;
  int times_asked = 0;
  const Outcome result = run_on_terminal({"--years", "1901-1901", "grid"}, [&] {
    ++times_asked;
    std::raise(SIGINT);
    return 0.0;
  });
  EXPECT_EQ(result.status, 130);
  EXPECT_EQ(times_asked, 1);  // before the first month, which is not written any more
  EXPECT_EQ(result.messages, "series_to_grid: interrupted; nothing was written\n");
  EXPECT_EQ(names(), Names{});
}

TEST(SeriesToGrid, ProgressIsShownInPlaceAndErasedAtTheEnd) {
  const TemporaryFolder folder;
  double now = 0;
  const Outcome result =
      run_on_terminal({"--years", "1901-1901", "grid"}, [&] { return now += 0.125; });
  std::string expected;
  for (const std::string text :
       {"16 % done, 10 MB/s, 2 s left", "33 % done, 10 MB/s, 1 s left",
        "50 % done, 10 MB/s, 1 s left", "66 % done, 10 MB/s, 1 s left",
        "83 % done, 10 MB/s, 1 s left", "100 % done, 10 MB/s, 0 s left"}) {
    expected += "\r\x1b[K'grid': " + text;
  }
  EXPECT_EQ(result.messages,
            expected +
                "\r\x1b[Kseries_to_grid: wrote 'grid': 2 cells, values in 12 of 12 "
                "months, 15556320 bytes\n");
}

TEST(SeriesToGrid, ProgressIsErasedBeforeAnErrorIsReported) {
  const TemporaryFolder folder;
  double now = 0;
  const Outcome result = run_on_terminal({"--years", "1901-1901", "grid"}, [&] {
    std::filesystem::remove("grid.part");
    return now += 1;
  });
  EXPECT_TRUE(result.messages.ends_with(
      "\r\x1b[Kseries_to_grid: cannot write 'grid': 'grid.part' was removed or "
      "replaced meanwhile\n"))
      << result.messages;
}

TEST(SeriesToGrid, VersionGoesToStandardOutput) {
  const Outcome result = run({"--version"}, "");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output, version_text());
  EXPECT_EQ(result.messages, "");
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

// The built program, run in a shell; its output goes to the files "out" and "err".
Outcome run_program(const std::string& arguments) {
  const std::string command =
      std::string("'") + SERIES_TO_GRID_PROGRAM + "' " + arguments + " >out 2>err";
  const int status = std::system(command.c_str());
  return {WEXITSTATUS(status), file_content("out"), file_content("err")};
}

TEST(SeriesToGridProgram, ItReadsStandardInputAndIsSilentAboutProgressInAFile) {
  const TemporaryFolder folder;
  write_file("series.csv", kSeries);
  const Outcome result = run_program("--years 1901-1901 grid - <series.csv");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.messages,
            "series_to_grid: wrote 'grid': 2 cells, values in 12 of 12 months, "
            "15556320 bytes\n");
  run({"--years", "1901-1901", "same"}, kSeries);
  EXPECT_TRUE(file_content("grid") == file_content("same"));
}

TEST(SeriesToGridProgram, ASeriesOnTheStandardInputIsNotOverwritten) {
  const TemporaryFolder folder;
  write_file("series.csv", kSeries);
  const Outcome result = run_program("--years 1901-1901 series.csv <series.csv");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.messages,
            "series_to_grid: 'series.csv' is the same file as the standard input; "
            "nothing was written\n");
  EXPECT_TRUE(file_content("series.csv") == kSeries);
}

TEST(SeriesToGridProgram, TheGridOfAnotherRunIsNotOverwritten) {
  const TemporaryFolder folder;
  write_file("series.csv", kSeries);
  with_stopped_process(
      {SERIES_TO_GRID_PROGRAM, "grid", "series.csv"}, "grid.part",
      [](ChildProcess& first) {
        const Outcome second = run_program("--years 1901-1902 grid series.csv");
        EXPECT_EQ(second.status, 1);
        EXPECT_EQ(second.messages,
                  "series_to_grid: cannot write 'grid': another run is writing it\n");
        EXPECT_TRUE(std::filesystem::exists("grid.part"));
        first.send(SIGQUIT);
        first.send(SIGCONT);
        EXPECT_EQ(first.wait(), 128 + SIGQUIT);
      });
  EXPECT_FALSE(std::filesystem::exists("grid.part"));
  EXPECT_FALSE(std::filesystem::exists("grid"));
}

TEST(SeriesToGridProgram, ItsExitStatusTellsTheKindOfError) {
  const TemporaryFolder folder;
  EXPECT_EQ(run_program("--help").status, 0);
  EXPECT_EQ(run_program("grid </dev/null").status, 1);
  EXPECT_EQ(run_program("--wrong").status, 2);
}

}  // namespace
}  // namespace veldmark::series_to_grid
