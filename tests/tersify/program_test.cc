// The built program as a process of its own: exit statuses, signals, limits.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "raw_text.h"
#include "support/child_process.h"
#include "support/temporary_folder.h"

namespace veldmark::tersify {
namespace {

using testing::condensed_line;
using testing::numbers;
using testing::raw_line;
using testing::repeated;
using veldmark::testing::ChildProcess;
using veldmark::testing::file_content;
using veldmark::testing::TemporaryFolder;
using veldmark::testing::with_stopped_process;
using veldmark::testing::write_file;

const std::string kRaw = raw_line(numbers()) + "\n";
const std::string kCondensed = condensed_line(numbers()) + "\n";

// Runs the program in a shell. Returns the exit status, -1 after a signal.
int run_program(const std::string& arguments, const std::string& before = "") {
  const std::string command =
      before + "'" TERSIFY_PROGRAM "' " + arguments + " > output 2> messages";
  const int status = std::system(command.c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(TersifyProgram, EndsWithStatusZeroOnSuccess) {
  const TemporaryFolder folder;
  write_file("a", kRaw);
  EXPECT_EQ(run_program("a"), 0);
  EXPECT_EQ(file_content("a.new"), kCondensed);
  EXPECT_EQ(file_content("messages"), "");
  EXPECT_EQ(run_program("--help"), 0);
  EXPECT_TRUE(file_content("output").starts_with("Usage: tersify"));
  EXPECT_EQ(run_program("--version"), 0);
  EXPECT_EQ(file_content("output"), "tersify (veldmark) " TERSIFY_VERSION "\n");
}

TEST(TersifyProgram, EndsWithStatusOneWhenAFileFailed) {
  const TemporaryFolder folder;
  write_file("a", "x");
  EXPECT_EQ(run_program("a"), 1);
  EXPECT_FALSE(std::filesystem::exists("a.new"));
  EXPECT_EQ(run_program("--check a"), 1);
}

// If both streams go to the same file, the lines keep their order.
TEST(TersifyProgram, MessagesAndOutputKeepTheirOrder) {
  const TemporaryFolder folder;
  write_file("a", kRaw);
  write_file("b", "x");
  EXPECT_NE(std::system("'" TERSIFY_PROGRAM "' a b > both 2>&1"), 0);
  EXPECT_TRUE(
      file_content("both").ends_with("condensed 1 of 2 files\n"
                                     "tersify: not condensed: 'b'\n"))
      << file_content("both");
}

TEST(TersifyProgram, EndsWithStatusTwoAfterWrongUsage) {
  const TemporaryFolder folder;
  EXPECT_EQ(run_program("--wrong"), 2);
  EXPECT_EQ(file_content("messages"),
            "tersify: unknown option '--wrong'\n"
            "Try 'tersify --help' for more information.\n");
  EXPECT_EQ(run_program("< /dev/null"), 2);
}

TEST(TersifyProgram, AsksAndReadsTheAnswer) {
  const TemporaryFolder folder;
  write_file("a", kRaw);
  write_file("list", "a\n");
  EXPECT_EQ(run_program("", "echo list | "), 0);
  EXPECT_EQ(file_content("a.new"), kCondensed);
}

TEST(TersifyProgram, AnUnwritableStandardOutputIsAFailure) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP();
  const TemporaryFolder folder;
  const int status =
      std::system("'" TERSIFY_PROGRAM "' --help > /dev/full 2> messages");
  EXPECT_EQ(WEXITSTATUS(status), 1);
  EXPECT_EQ(file_content("messages"), "tersify: cannot write to standard output\n");
}

TEST(TersifyProgram, AFileSizeLimitIsAFailureAndLeavesNothing) {
  const TemporaryFolder folder;
  write_file("a", repeated(1000, kRaw));
  write_file("a.new", "earlier");
  EXPECT_EQ(run_program("a", "ulimit -f 512; "), 1);
  EXPECT_EQ(file_content("messages"),
            "tersify: cannot write 'a.new.part': File too large\n"
            "tersify: not condensed: 'a'\n");
  EXPECT_EQ(file_content("a.new"), "earlier");
  EXPECT_FALSE(std::filesystem::exists("a.new.part"));
}

// Makes "big", large enough to stop the program while it works.
constexpr int kBigLines = 36000;

void make_big_file() {
  const std::string month = repeated(360, kRaw);
  std::ofstream file("big", std::ios::binary);
  for (int i = 0; i < kBigLines / 360; ++i) {
    file << month;
  }
}

// Returns whether "big.new" is the complete copy of "big".
bool is_copy_whole() {
  std::ifstream file("big.new", std::ios::binary);
  std::string line(kCondensed.size(), '\0');
  int lines = 0;
  while (file.read(line.data(), static_cast<std::streamsize>(line.size()))) {
    if (line != kCondensed) {
      return false;
    }
    ++lines;
  }
  return file.gcount() == 0 && lines == kBigLines;
}

// Stops a run on "big" and "after" while it copies "big".
void with_stopped_run(const std::function<void(ChildProcess&)>& action) {
  with_stopped_process({TERSIFY_PROGRAM, "big", "after"}, "big.new.part", action);
}

TEST(TersifyProgram, KilledInTheMiddleItLeavesNothingThatLooksComplete) {
  const TemporaryFolder folder;
  make_big_file();
  with_stopped_run([](ChildProcess& run) {
    run.send(SIGKILL);
    EXPECT_EQ(run.wait(), -SIGKILL);
  });
  EXPECT_FALSE(std::filesystem::exists("big.new"));
  EXPECT_TRUE(std::filesystem::exists("big.new.part"));

  // The next run succeeds.
  EXPECT_EQ(run_program("big"), 0);
  EXPECT_TRUE(is_copy_whole());
  EXPECT_FALSE(std::filesystem::exists("big.new.part"));
}

void expect_orderly_end(int signal) {
  const TemporaryFolder folder;
  make_big_file();
  write_file("big.new", "earlier");
  with_stopped_run([&](ChildProcess& run) {
    run.send(signal);
    run.send(SIGCONT);
    EXPECT_EQ(run.wait(), 128 + signal);
  });
  EXPECT_EQ(file_content("messages"),
            "tersify: interrupted\ntersify: not condensed: 'big', 'after'\n");
  EXPECT_EQ(file_content("output"), "condensed 0 of 2 files\n");
  EXPECT_EQ(file_content("big.new"), "earlier");
  EXPECT_FALSE(std::filesystem::exists("big.new.part"));
}

TEST(TersifyProgram, FilesBeforeTheInterruptedOneAreKept) {
  const TemporaryFolder folder;
  make_big_file();
  write_file("before", kRaw);
  with_stopped_process({TERSIFY_PROGRAM, "before", "big", "after"}, "big.new.part",
                       [](ChildProcess& run) {
                         run.send(SIGINT);
                         run.send(SIGCONT);
                         EXPECT_EQ(run.wait(), 128 + SIGINT);
                       });
  EXPECT_EQ(file_content("messages"),
            "tersify: interrupted\ntersify: not condensed: 'big', 'after'\n");
  EXPECT_TRUE(file_content("output").ends_with("condensed 1 of 3 files\n"));
  EXPECT_EQ(file_content("before.new"), kCondensed);
}

TEST(TersifyProgram, ARequestToTerminateLeavesNothing) { expect_orderly_end(SIGTERM); }

TEST(TersifyProgram, AnInterruptLeavesNothing) { expect_orderly_end(SIGINT); }

TEST(TersifyProgram, AHangUpLeavesNothing) { expect_orderly_end(SIGHUP); }

TEST(TersifyProgram, AQuitKeyLeavesNothing) { expect_orderly_end(SIGQUIT); }

TEST(TersifyProgram, TheEndOfItsProcessorTimeLeavesNothing) {
  expect_orderly_end(SIGXCPU);
}

TEST(TersifyProgram, TheCopyOfAnotherRunIsNotOverwritten) {
  const TemporaryFolder folder;
  make_big_file();
  with_stopped_run([](ChildProcess& first) {
    const std::string second = "'" TERSIFY_PROGRAM "' big >output2 2>messages2";
    EXPECT_EQ(WEXITSTATUS(std::system(second.c_str())), 1);
    EXPECT_EQ(file_content("messages2"),
              "tersify: cannot write 'big.new': another run is writing it\n"
              "tersify: not condensed: 'big'\n");
    EXPECT_EQ(file_content("output2"), "");
    EXPECT_TRUE(std::filesystem::exists("big.new.part"));
    first.send(SIGCONT);
    EXPECT_EQ(first.wait(), 1);  // there is no "after"
  });
  EXPECT_TRUE(file_content("output").starts_with("wrote 'big.new': 36000 lines, "));
  EXPECT_TRUE(is_copy_whole());
  EXPECT_FALSE(std::filesystem::exists("big.new.part"));
}

TEST(TersifyProgram, AReplacedPartFileDoesNotBecomeTheCopy) {
  const TemporaryFolder folder;
  make_big_file();
  write_file("big.new", "earlier");
  with_stopped_run([](ChildProcess& run) {
    std::filesystem::remove("big.new.part");
    write_file("big.new.part", "hello");
    run.send(SIGCONT);
    EXPECT_EQ(run.wait(), 1);
  });
  EXPECT_TRUE(
      file_content("messages")
          .starts_with(
              "tersify: cannot write 'big.new': 'big.new.part' was removed or replaced "
              "meanwhile\n"));
  EXPECT_EQ(file_content("big.new"), "earlier");
  EXPECT_EQ(file_content("big.new.part"), "hello");
}

TEST(TersifyProgram, APipeInPlaceOfThePartDoesNotBlockIt) {
  const TemporaryFolder folder;
  write_file("a", kRaw);
  ASSERT_EQ(::mkfifo("a.new.part", 0600), 0);
  EXPECT_EQ(run_program("a", "timeout 20 "), 0);
  EXPECT_EQ(file_content("a.new"), kCondensed);
}

TEST(TersifyProgram, TextForAClosedStreamEndsUpInNoFile) {
  const TemporaryFolder folder;
  write_file("a", kRaw);
  EXPECT_EQ(WEXITSTATUS(std::system("'" TERSIFY_PROGRAM "' a <&- >&- 2>&-")), 1);
  EXPECT_EQ(file_content("a.new"), kCondensed);
  EXPECT_EQ(file_content("a"), kRaw);
}

TEST(TersifyProgram, AListMayComeThroughAPipe) {
  const TemporaryFolder folder;
  write_file("a", kRaw);
  EXPECT_EQ(run_program("--list /dev/stdin", "echo a | "), 0);
  EXPECT_EQ(file_content("a.new"), kCondensed);
}

TEST(TersifyProgram, ADataFileForAListIsAnsweredWithOneLine) {
  const TemporaryFolder folder;
  write_file("grid", repeated(1000, kCondensed));
  EXPECT_EQ(run_program("", "echo grid | "), 1);
  EXPECT_EQ(file_content("messages"),
            "tersify: 'grid' is no list of file names: line 1 can't be one\n");
}

}  // namespace
}  // namespace veldmark::tersify
