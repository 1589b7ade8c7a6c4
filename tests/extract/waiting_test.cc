// A run that waits for another program ends after a signal.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <optional>
#include <string>

#include "extract/sites_file.h"
#include "extract/text_output.h"
#include "support/temporary_folder.h"
#include "util/interrupt_watch.h"

namespace veldmark::extract {
namespace {

using veldmark::testing::TemporaryFolder;
using veldmark::testing::write_file;

// A process that acts a moment later.
class Later {
 public:
  explicit Later(const std::function<void(pid_t parent)>& action) {
    const pid_t parent = ::getpid();
    process_ = ::fork();
    if (process_ == 0) {
      constexpr useconds_t kMoment = 200'000;
      ::usleep(kMoment);
      action(parent);
      ::_exit(0);
    }
  }
  ~Later() { ::waitpid(process_, nullptr, 0); }
  Later(const Later&) = delete;
  Later& operator=(const Later&) = delete;
  Later(Later&&) = delete;
  Later& operator=(Later&&) = delete;

 private:
  pid_t process_;
};

// Ends the process if it hangs.
class Deadline {
 public:
  Deadline() { ::alarm(kSeconds); }
  ~Deadline() { ::alarm(0); }
  Deadline(const Deadline&) = delete;
  Deadline& operator=(const Deadline&) = delete;
  Deadline(Deadline&&) = delete;
  Deadline& operator=(Deadline&&) = delete;

 private:
  static constexpr unsigned kSeconds = 20;
};

void stop(pid_t process) { ::kill(process, SIGINT); }

TEST(Waiting, ATableOfSitesMayComeThroughAPipe) {
  const Deadline deadline;
  const TemporaryFolder folder;
  ASSERT_EQ(::mkfifo("sites", 0600), 0);
  const Later writer([](pid_t /*parent*/) { write_file("sites", "lat,lon\n1,2\n"); });
  EXPECT_EQ(read_sites("sites").sites.size(), 1U);
}

TEST(Waiting, ForATableOfSitesEndsWithAStopSignal) {
  const Deadline deadline;
  const TemporaryFolder folder;
  ASSERT_EQ(::mkfifo("sites", 0600), 0);
  const InterruptWatch watch;
  const Later signal(stop);
  EXPECT_THROW(read_sites("sites"), Interrupted);
}

// Writes to standard output, a full pipe that nobody reads. Returns whether a signal
// ended the wait.
bool stops_before_a_full_pipe() {
  std::array<int, 2> ends{-1, -1};
  EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK), 0);
  while (::write(ends[1], "x", 1) == 1) {
  }
  ::fcntl(ends[1], F_SETFL, 0);
  const pid_t child = ::fork();
  if (child == 0) {
    const Deadline deadline;
    ::dup2(ends[1], STDOUT_FILENO);
    const InterruptWatch watch;
    const Later signal(stop);
    try {
      TextOutput output(std::nullopt);
      output.write("a line\n");
      output.complete();
    } catch (const Interrupted&) {
      std::quick_exit(1);
    }
    std::quick_exit(0);
  }
  int status = -1;
  ::waitpid(child, &status, 0);
  ::close(ends[0]);
  ::close(ends[1]);
  return WIFEXITED(status) && WEXITSTATUS(status) == 1;
}

TEST(Waiting, ForTheReaderOfStandardOutputEndsWithAStopSignal) {
  EXPECT_TRUE(stops_before_a_full_pipe());
}

}  // namespace
}  // namespace veldmark::extract
