#include "support/terminal.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <array>

namespace veldmark::testing {

Terminal::Terminal() : screen_end_(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
  EXPECT_EQ(::grantpt(screen_end_), 0);
  EXPECT_EQ(::unlockpt(screen_end_), 0);
  std::array<char, 100> name{};
  EXPECT_EQ(::ptsname_r(screen_end_, name.data(), name.size()), 0);
  program_end_ = ::open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC);
  termios settings{};
  EXPECT_EQ(::tcgetattr(program_end_, &settings), 0);
  ::cfmakeraw(&settings);  // line ends stay what they are
  EXPECT_EQ(::tcsetattr(program_end_, TCSANOW, &settings), 0);
}

Terminal::~Terminal() {
  ::close(program_end_);
  ::close(screen_end_);
}

std::string Terminal::screen() {
  ::fcntl(screen_end_, F_SETFL, O_NONBLOCK);
  std::string all;
  std::array<char, 1000> piece{};
  for (ssize_t count = 0;
       (count = ::read(screen_end_, piece.data(), piece.size())) > 0;) {
    all.append(piece.data(), static_cast<std::size_t>(count));
  }
  return all;
}

}  // namespace veldmark::testing
