#include "extract/text_output.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <optional>
#include <string>

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
      ::_exit(1);
    }
    ::_exit(0);
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

TEST(TextOutput, WaitsForTheReaderOfANonBlockingStandardOutput) {
  EXPECT_TRUE(written_to_a_late_reader() == kMoreThanAPipeTakes);
}

}  // namespace
}  // namespace veldmark::extract
