#include "companion/wait_until_ready.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <thread>

namespace veldmark::companion {
namespace {

TEST(WaitUntilReady, ReturnsWhenThereIsSomethingToRead) {
  std::array<int, 2> ends{};
  ASSERT_EQ(::pipe(ends.data()), 0);
  std::thread writer([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(::write(ends[1], "x", 1), 1);
  });
  wait_until_ready(ends[0], POLLIN);
  int readable = 0;
  EXPECT_EQ(::ioctl(ends[0], FIONREAD, &readable), 0);
  EXPECT_EQ(readable, 1);
  writer.join();
  ::close(ends[0]);
  ::close(ends[1]);
}

}  // namespace
}  // namespace veldmark::companion
