// Progress is shown on a terminal only. Each run is delayed for longer than the update
// interval, so that there is something to show.

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include "raw_text.h"
#include "support/child_process.h"
#include "support/temporary_folder.h"
#include "support/terminal.h"

namespace veldmark::tersify {
namespace {

using testing::condensed_line;
using testing::numbers;
using testing::raw_line;
using testing::repeated;
using veldmark::testing::ChildProcess;
using veldmark::testing::file_content;
using veldmark::testing::TemporaryFolder;
using veldmark::testing::Terminal;
using veldmark::testing::with_stopped_process;
using veldmark::testing::write_file;

using Command = std::vector<std::string>;

void write_lines(const std::string& name, const std::string& line) {
  std::ofstream file(name, std::ios::binary);
  const std::string month = repeated(360, line + "\n");
  for (int i = 0; i < 100; ++i) {
    file << month;
  }
}

void hold_up(ChildProcess& run) {
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  run.send(SIGCONT);
  run.wait();
}

// Returns what a delayed run writes to a terminal. On a busy machine the delay may come
// too late for any progress to be shown: then the run is repeated.
std::string screen_of(const Command& command, const std::string& part) {
  std::string screen;
  for (int i = 0; i < 5 && screen.find("done") == std::string::npos; ++i) {
    Terminal terminal;
    with_stopped_process(command, part, hold_up, terminal.descriptor());
    screen = terminal.screen();
  }
  return screen;
}

// Returns what a delayed run writes to a file.
std::string messages_of(const Command& command, const std::string& part) {
  with_stopped_process(command, part, hold_up);
  return file_content("messages");
}

// Each update replaces the previous one, and the last one is erased.
const std::string kStates =
    "(\r\x1b\\[K'big[.a-z]*': [0-9]+ % done, [0-9]+ MB/s, [0-9]+ s left)+\r\x1b\\[K";

TEST(Progress, OfTersifyIsShownOnATerminal) {
  const TemporaryFolder folder;
  write_lines("big", raw_line(numbers()));
  const std::string screen = screen_of({TERSIFY_PROGRAM, "big"}, "big.new.part");
  EXPECT_TRUE(std::regex_match(screen, std::regex(kStates))) << screen;
}

TEST(Progress, OfTersifyIsNotShownInAFile) {
  const TemporaryFolder folder;
  write_lines("big", raw_line(numbers()));
  EXPECT_EQ(messages_of({TERSIFY_PROGRAM, "big"}, "big.new.part"), "");
}

TEST(Progress, OfAnExpandedSeriesIsShownOnATerminal) {
  const TemporaryFolder folder;
  write_file("series",
             "lon,lat,1901-01,1901-02,1901-03,1901-04,1901-05,1901-06,"
             "1901-07,1901-08,1901-09,1901-10,1901-11,1901-12\n"
             "0.25,0.25,1,2,3,4,5,6,7,8,9,10,11,12\n");
  const Command command{SERIES_TO_GRID_PROGRAM, "--years", "1901-1910", "big",
                        "series"};
  const std::string note =
      "series_to_grid: note: the series covers 1901-1901; other years of 1901-1910 are "
      "missing\n";
  const std::string wrote =
      "series_to_grid: wrote 'big': 1 cells, values in 12 of 120 months, 155563200 "
      "bytes\n";
  const std::string screen = screen_of(command, "big.part");
  EXPECT_TRUE(std::regex_match(screen, std::regex("[^\r]*" + kStates + "[^\r]*")))
      << screen;
  EXPECT_TRUE(screen.starts_with(note)) << screen;
  EXPECT_TRUE(screen.ends_with("\r\x1b[K" + wrote)) << screen;
  EXPECT_EQ(messages_of(command, "big.part"), note + wrote);
}

}  // namespace
}  // namespace veldmark::tersify
