#include "util/closed_streams.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace veldmark {
namespace {

// Returns the descriptor that the next file gets.
int next_descriptor() {
  const int descriptor = ::open("/dev/null", O_RDONLY);
  ::close(descriptor);
  return descriptor;
}

TEST(ReserveClosedStreams, OpensNothingIfAllStreamsAreOpen) {
  const int before = next_descriptor();
  reserve_closed_streams();
  EXPECT_EQ(next_descriptor(), before);
}

TEST(ReserveClosedStreams, ReadingFromAClosedInputFails) {
  const int saved = ::dup(STDIN_FILENO);
  ::close(STDIN_FILENO);
  reserve_closed_streams();
  char byte = 0;
  EXPECT_EQ(::read(STDIN_FILENO, &byte, 1), -1);
  EXPECT_EQ(::fcntl(STDIN_FILENO, F_GETFL) & O_ACCMODE, O_WRONLY);
  ::dup2(saved, STDIN_FILENO);
  ::close(saved);
}

}  // namespace
}  // namespace veldmark
