// Outputs whose names are taken by other files.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "extract/netcdf_output.h"
#include "extract/run.h"
#include "support/grid_text.h"
#include "support/temporary_folder.h"
#include "util/failure.h"

namespace veldmark::extract {
namespace {

using veldmark::testing::file_content;
using veldmark::testing::folder_content;
using veldmark::testing::GridText;
using veldmark::testing::TemporaryFolder;
using veldmark::testing::write_file;
using Words = std::vector<std::string>;

constexpr const char* kName = "cru_ts4.01.1901.1901.tmp.dat.new";

bool can_write_netcdf() {
  try {
    load_netcdf();
  } catch (const Failure&) {
    return false;
  }
  return true;
}

struct Outcome {
  int status = -1;
  std::string messages;
};

// One year with a cell at 60.25, -139.75.
class Outputs : public ::testing::Test {
 protected:
  Outputs() {
    GridText grid(1901, 301, 301, -999);
    for (int month = 1; month <= 12; ++month) {
      grid.set_value(1901, month, 301, 81, month);
      for (int row = 1; row <= 360; ++row) {
        if (row != 301) {
          grid.set_line(1901, month, row, kSea);
        }
      }
    }
    write_file(kName, grid.text());
    write_file("sites.csv", kSites);
  }

  // Runs on the cell. `meanwhile` is called while the grid file is read.
  static Outcome run(const Words& words, const std::function<void()>& meanwhile = {}) {
    Words arguments{kName, "--cell", "60.25,-139.75"};
    if (!words.empty() && words.front() == "--sites") {
      arguments = {kName};
    }
    arguments.insert(arguments.end(), words.begin(), words.end());
    std::ostringstream output;
    std::ostringstream messages;
    companion::Environment environment{
        .input = -1, .output = output, .messages = {.stream = messages}};
    if (meanwhile) {
      // The clock is looked at while something is read.
      environment.messages.shown = true;
      environment.messages.clock = [&, done = false]() mutable {
        if (!done) {
          done = true;
          meanwhile();
        }
        return 0.0;
      };
    }
    const int status = run_extract(arguments, environment);
    return {status, messages.str()};
  }

  static void expect_refused(const Words& words, const std::string& message,
                             const std::function<void()>& meanwhile = {}) {
    const Outcome outcome = run(words, meanwhile);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.messages, "veldmark-extract: " + message + "\n");
  }

  // The names in the folder beside those of the inputs.
  static std::map<std::string, std::string> outputs() {
    std::map<std::string, std::string> content = folder_content();
    content.erase(kName);
    content.erase("sites.csv");
    return content;
  }

  static inline const std::string kSites = "lat,lon\n60.25,-139.75\n";
  static inline const std::string kSea = [] {
    std::string line;
    for (int column = 0; column < 720; ++column) {
      line += " -999";
    }
    return line;
  }();

  TemporaryFolder folder_;
};

using Files = std::map<std::string, std::string>;

TEST_F(Outputs, AFileCreatedDuringTheRunIsKept) {
  const Words formats{"csv", "netcdf"};
  for (const std::string& format : formats) {
    if (format == "netcdf" && !can_write_netcdf()) {
      continue;
    }
    expect_refused({"--format", format, "-o", "x"},
                   "cannot write 'x': another file has got this name meanwhile",
                   [] { write_file("x", "theirs"); });
    EXPECT_EQ(outputs(), (Files{{"x", "theirs"}})) << format;
    const Outcome wanted = run({"--format", format, "-o", "x", "--overwrite"},
                               [] { write_file("x", "theirs, too"); });
    EXPECT_EQ(wanted.status, 0);
    EXPECT_NE(file_content("x"), "theirs, too");
    std::filesystem::remove("x");
  }
}

TEST_F(Outputs, EitherBothFilesAppearOrNone) {
  for (const std::string taken : {"x.TSF", "x.XY"}) {
    expect_refused(
        {"--format", "tsf", "-o", "x"},
        "cannot write '" + taken + "': another file has got this name meanwhile",
        [&] { write_file(taken, "theirs"); });
    EXPECT_EQ(outputs(), (Files{{taken, "theirs"}}));
    expect_refused({"--format", "tsf", "-o", "x"},
                   "'" + taken + "' exists; --overwrite replaces it");
    std::filesystem::remove(taken);
  }
}

TEST_F(Outputs, BothFilesAreReplacedOnRequest) {
  write_file("x.TSF", "old");
  write_file("x.XY", "old");
  EXPECT_EQ(run({"--format", "tsf", "-o", "x", "--overwrite", "--quiet"}).status, 0);
  EXPECT_EQ(outputs().size(), 2U);
  EXPECT_EQ(file_content("x.TSF").size(), 129U + 78);
  EXPECT_NE(file_content("x.XY"), "old");
}

TEST_F(Outputs, APipeOrAFolderIsNoOutput) {
  ASSERT_EQ(::mkfifo("pipe", 0600), 0);
  std::filesystem::create_directory("folder");
  for (const std::string name : {"pipe", "folder", "/dev/null"}) {
    for (const Words& more : {Words{}, Words{"--overwrite"}}) {
      Words words{"-o", name};
      words.insert(words.end(), more.begin(), more.end());
      expect_refused(
          words, "cannot write '" + name + "': it exists and is not a regular file");
    }
  }
  EXPECT_TRUE(std::filesystem::is_fifo("pipe"));
  EXPECT_TRUE(std::filesystem::is_empty("folder"));
  std::filesystem::remove("pipe");
  ASSERT_EQ(::mkfifo("x.XY", 0600), 0);
  expect_refused({"--format", "tsf", "-o", "x", "--overwrite"},
                 "cannot write 'x.XY': it exists and is not a regular file");
  EXPECT_FALSE(std::filesystem::exists("x.TSF"));
}

TEST_F(Outputs, APipeInPlaceOfTheGridFileIsRefusedAtOnce) {
  ASSERT_EQ(::mkfifo("cru.1901.1901.tmp", 0600), 0);
  ::alarm(20);  // ends the test if it hangs
  std::ostringstream output;
  std::ostringstream messages;
  const int status =
      run_extract(Words{"cru.1901.1901.tmp"},
                  {.input = -1, .output = output, .messages = {.stream = messages}});
  ::alarm(0);
  EXPECT_EQ(status, 1);
  EXPECT_EQ(messages.str(),
            "veldmark-extract: 'cru.1901.1901.tmp' is no regular file: its lines can't "
            "be addressed\n");
}

TEST_F(Outputs, ADanglingLinkOccupiesItsName) {
  std::filesystem::create_symlink("nowhere", "x.csv");
  expect_refused({"-o", "x.csv"}, "'x.csv' exists; --overwrite replaces it");
  EXPECT_TRUE(std::filesystem::is_symlink("x.csv"));
  EXPECT_FALSE(std::filesystem::exists("nowhere"));
}

TEST_F(Outputs, TheTargetOfALinkIsKept) {
  write_file("thesis", "mine");
  std::filesystem::create_symlink("thesis", "x.csv");
  EXPECT_EQ(run({"-o", "x.csv", "--overwrite"}).status, 0);
  EXPECT_EQ(file_content("thesis"), "mine");
  EXPECT_FALSE(std::filesystem::is_symlink("x.csv"));
}

TEST_F(Outputs, TheInputIsNeverTheOutputUnderAnyLink) {
  const std::string grid = file_content(kName);
  std::filesystem::create_symlink(kName, "symbolic");
  std::filesystem::create_hard_link(kName, "hard");
  std::filesystem::create_hard_link(kName, "y.part");
  const std::string input =
      "' is the same file as '" + std::string(kName) + "'; nothing was written";
  expect_refused({"-o", kName, "--format", "csv", "--overwrite"},
                 "'" + std::string(kName) + input);
  expect_refused({"-o", "symbolic", "--overwrite"}, "'symbolic" + input);
  expect_refused({"-o", "hard", "--overwrite"}, "'hard" + input);
  expect_refused({"-o", "y", "--overwrite"}, "'y.part" + input);
  std::filesystem::create_hard_link(kName, "z.XY");
  expect_refused({"-o", "z", "--format", "tsf", "--overwrite"}, "'z.XY" + input);
  EXPECT_TRUE(file_content(kName) == grid);
  EXPECT_EQ(outputs().size(), 4U);
}

TEST_F(Outputs, TheSitesFileIsNeverTheOutput) {
  std::filesystem::create_symlink("sites.csv", "link.csv");
  const std::string sites = "' is the same file as 'sites.csv'; nothing was written";
  expect_refused({"--sites", "sites.csv", "-o", "sites.csv", "--overwrite"},
                 "'sites.csv" + sites);
  expect_refused({"--sites", "sites.csv", "-o", "link.csv", "--overwrite"},
                 "'link.csv" + sites);
  EXPECT_EQ(file_content("sites.csv"), kSites);
}

TEST_F(Outputs, AMissingFolderIsNamed) {
  for (const std::string format : {"csv", "netcdf"}) {
    if (format == "csv" || can_write_netcdf()) {
      expect_refused({"--format", format, "-o", "none/x"},
                     "cannot write 'none/x.part': No such file or directory");
    }
  }
  EXPECT_EQ(outputs(), Files());
}

TEST_F(Outputs, ASignalLeavesNoFileAndNoSummary) {
  const auto stop = [] { std::raise(SIGINT); };
  const Outcome file = run({"-o", "x"}, stop);
  EXPECT_EQ(file.status, 128 + SIGINT);
  EXPECT_EQ(file.messages, "veldmark-extract: interrupted; nothing was written\n");
  EXPECT_EQ(outputs(), Files());
  const Outcome standard_output = run({}, stop);
  EXPECT_EQ(standard_output.status, 128 + SIGINT);
  EXPECT_EQ(
      standard_output.messages,
      "veldmark-extract: interrupted; what is on standard output is not complete\n");
}

}  // namespace
}  // namespace veldmark::extract
