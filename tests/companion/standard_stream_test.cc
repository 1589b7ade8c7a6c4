#include "companion/standard_stream.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <ostream>
#include <string>
#include <thread>

namespace veldmark::companion {
namespace {

std::string read_all(int descriptor) {
  std::string all;
  std::array<char, 1000> piece{};
  for (ssize_t count = 0;
       (count = ::read(descriptor, piece.data(), piece.size())) > 0;) {
    all.append(piece.data(), static_cast<std::size_t>(count));
  }
  return all;
}

// Writes `text` to a pipe that is read slowly; returns what the reader got.
std::string through_pipe(const std::string& text, int flags) {
  std::array<int, 2> ends{};
  EXPECT_EQ(::pipe(ends.data()), 0);
  EXPECT_EQ(::fcntl(ends[1], F_SETFL, flags), 0);
  std::string read;
  std::thread reader([&] { read = read_all(ends[0]); });
  {
    StandardStream stream(ends[1]);
    std::ostream output(&stream);
    output << text << std::flush << "end" << '.';
    EXPECT_TRUE(output.good());
  }
  ::close(ends[1]);
  reader.join();
  ::close(ends[0]);
  return read;
}

TEST(StandardStream, WritesWhatItIsGiven) {
  EXPECT_EQ(through_pipe("text ", 0), "text end.");
  const std::string large(1'000'000, 'x');
  EXPECT_TRUE(through_pipe(large, 0) == large + "end.");
}

// A pipe buffers 64 KiB; after that, write() on a non-blocking pipe fails with EAGAIN.
TEST(StandardStream, NothingIsLostOnANonBlockingPipe) {
  const std::string large(1'000'000, 'x');
  EXPECT_TRUE(through_pipe(large, O_NONBLOCK) == large + "end.");
}

TEST(StandardStream, AClosedPipeIsAFailure) {
  auto* const before = std::signal(SIGPIPE, SIG_IGN);
  std::array<int, 2> ends{};
  ASSERT_EQ(::pipe(ends.data()), 0);
  ::close(ends[0]);
  StandardStream stream(ends[1]);
  std::ostream output(&stream);
  output << "text" << std::flush;
  EXPECT_FALSE(output.good());
  ::close(ends[1]);
  std::signal(SIGPIPE, before);
}

TEST(StandardStream, AFullBufferThatCannotBeWrittenIsAFailure) {
  StandardStream stream(-1);
  std::ostream output(&stream);
  output << std::string(100'000, 'x');
  EXPECT_FALSE(output.good());
}

}  // namespace
}  // namespace veldmark::companion
