#include "extract/text_output.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <optional>
#include <string>

#include "util/failure.h"

namespace veldmark::extract {
namespace {

const std::string kMoreThanAPipeTakes(1'000'000, 'x');

// Writes in a process whose standard output is a non-blocking pipe with a slow reader.
// Returns what arrived.
std::string written_to_a_late_reader() {
  std::array<int, 2> ends{-1, -1};
  EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    ::dup2(ends[1], STDOUT_FILENO);
    try {
      TextOutput output(std::nullopt);
      output.write(kMoreThanAPipeTakes);
      output.complete();
    } catch (...) {
      std::quick_exit(1);
    }
    std::quick_exit(0);
  }
  ::close(ends[1]);
  ::fcntl(ends[0], F_SETFL, 0);
  ::usleep(100'000);
  std::string text;
  std::array<char, 65536> piece{};
  for (ssize_t count = 1; count > 0;) {
    count = ::read(ends[0], piece.data(), piece.size());
    text.append(piece.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
  }
  ::close(ends[0]);
  int status = -1;
  ::waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  return text;
}

// Writes in a process whose standard output is a full disk. Returns whether it got this
// message.
bool is_message_about_a_full_disk(const std::string& message) {
  const pid_t child = ::fork();
  if (child == 0) {
    ::dup2(::open("/dev/full", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
    try {
      TextOutput output(std::nullopt);
      output.write("a line\n");
      output.complete();
    } catch (const Failure& failure) {
      std::quick_exit(failure.what() == message ? 1 : 2);
    }
    std::quick_exit(0);
  }
  int status = -1;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 1;
}

TEST(TextOutput, AFullDiskBehindStandardOutputIsReported) {
  EXPECT_TRUE(is_message_about_a_full_disk(
      "cannot write to standard output: No space left on device"));
}

TEST(TextOutput, WaitsForTheReaderOfANonBlockingStandardOutput) {
  EXPECT_TRUE(written_to_a_late_reader() == kMoreThanAPipeTakes);
}

}  // namespace
}  // namespace veldmark::extract
