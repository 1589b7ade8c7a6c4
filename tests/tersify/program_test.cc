// The built program as a process of its own: exit statuses, signals, limits.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "raw_text.h"
#include "support/temporary_folder.h"

namespace veldmark::tersify {
namespace {

using testing::condensed_line;
using testing::numbers;
using testing::raw_line;
using testing::repeated;
using veldmark::testing::file_content;
using veldmark::testing::TemporaryFolder;
using veldmark::testing::write_file;

const std::string kRaw = raw_line(numbers()) + "\n";
const std::string kCondensed = condensed_line(numbers()) + "\n";

// Runs the program by the shell. Result: the exit status, -1 after a signal.
int run_program(const std::string& arguments, const std::string& before = "") {
  const std::string command =
      before + "'" TERSIFY_PROGRAM "' " + arguments + " > output 2> messages";
  const int status = std::system(command.c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(TersifyProgram, EndsWithStatusZeroWhenAllIsWell) {
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

TEST(TersifyProgram, AScreenThatCannotBeWrittenIsAFailure) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP();
  const TemporaryFolder folder;
  const int status =
      std::system("'" TERSIFY_PROGRAM "' --help > /dev/full 2> messages");
  EXPECT_EQ(WEXITSTATUS(status), 1);
  EXPECT_EQ(file_content("messages"), "tersify: cannot write the standard output\n");
}

TEST(TersifyProgram, AFileThatMayNotGrowIsAFailureAndLeavesNothing) {
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

// Makes "big", which takes the program long enough to be met at work.
void make_big_file() {
  const std::string month = repeated(360, kRaw);
  std::ofstream file("big", std::ios::binary);
  for (int i = 0; i < 100; ++i) file << month;
}

// Starts the program on "big" and sends it a signal as soon as a part of the copy is
// there. Result: how the process ended, as wait(2) tells it.
int run_and_signal(int signal) {
  const pid_t child = ::fork();
  if (child == 0) {
    const int messages = ::open("messages", O_WRONLY | O_CREAT | O_TRUNC, 0666);
    const int output = ::open("output", O_WRONLY | O_CREAT | O_TRUNC, 0666);
    ::dup2(messages, STDERR_FILENO);
    ::dup2(output, STDOUT_FILENO);
    ::execl(TERSIFY_PROGRAM, "tersify", "big", "after", nullptr);
    ::_exit(127);
  }
  int status = 0;
  std::error_code not_there;
  while (::waitpid(child, &status, WNOHANG) == 0) {
    const auto size = std::filesystem::file_size("big.new.part", not_there);
    if (!not_there && size > 0) {
      ::kill(child, signal);
      ::waitpid(child, &status, 0);
      break;
    }
    std::this_thread::sleep_for(std::chrono::microseconds(200));
  }
  return status;
}

// A busy machine can let the program end before the signal comes; then once more.
template <typename Met>
int run_until_met(int signal, const Met& was_met) {
  int status = 0;
  for (int i = 0; i < 20; ++i) {
    std::filesystem::remove("big.new");
    std::filesystem::remove("big.new.part");
    status = run_and_signal(signal);
    if (was_met(status)) break;
  }
  return status;
}

TEST(TersifyProgram, KilledInTheMiddleItLeavesNothingThatLooksComplete) {
  const TemporaryFolder folder;
  make_big_file();
  const int status =
      run_until_met(SIGKILL, [](int ended) { return WIFSIGNALED(ended); });
  ASSERT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(WTERMSIG(status), SIGKILL);
  EXPECT_FALSE(std::filesystem::exists("big.new"));
  EXPECT_TRUE(std::filesystem::exists("big.new.part"));

  // The next run finds its way.
  EXPECT_EQ(run_program("big"), 0);
  EXPECT_EQ(std::filesystem::file_size("big.new"), 36000U * 3601);
  EXPECT_FALSE(std::filesystem::exists("big.new.part"));
}

void expect_orderly_end(int signal) {
  const TemporaryFolder folder;
  make_big_file();
  const int status = run_until_met(
      signal, [](int ended) { return WIFEXITED(ended) && WEXITSTATUS(ended) > 1; });
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 128 + signal);
  EXPECT_EQ(file_content("messages"),
            "tersify: interrupted\ntersify: not condensed: 'big', 'after'\n");
  EXPECT_EQ(file_content("output"), "condensed 0 of 2 files\n");
  EXPECT_FALSE(std::filesystem::exists("big.new"));
  EXPECT_FALSE(std::filesystem::exists("big.new.part"));
}

TEST(TersifyProgram, ARequestToTerminateLeavesNothing) { expect_orderly_end(SIGTERM); }

TEST(TersifyProgram, AnInterruptLeavesNothing) { expect_orderly_end(SIGINT); }

}  // namespace
}  // namespace veldmark::tersify
