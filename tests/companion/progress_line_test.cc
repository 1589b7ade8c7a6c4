#include "companion/progress_line.h"

#include <gtest/gtest.h>

#include <chrono>
#include <sstream>
#include <thread>

namespace veldmark::companion {
namespace {

TEST(ProgressText, ShowsPercentageSpeedAndTimeLeft) {
  EXPECT_EQ(progress_text(500'000'000, 2'000'000'000, 0.5),
            "25 % done, 1000 MB/s, 2 s left");
  EXPECT_EQ(progress_text(2'000'000'000, 2'000'000'000, 2),
            "100 % done, 1000 MB/s, 0 s left");
}

TEST(ProgressText, OmitsWhatIsUnknown) {
  EXPECT_EQ(progress_text(0, 1000, 1), "0 % done");
  EXPECT_EQ(progress_text(10, 1000, 0), "1 % done");
  EXPECT_EQ(progress_text(0, 0, 0), "0 % done");
  EXPECT_EQ(progress_text(1, 1, 1), "100 % done, 0 MB/s, 0 s left");
}

TEST(ProgressText, AGrowingFileShowsAtMost100Percent) {
  EXPECT_EQ(progress_text(2'000'000, 1'000'000, 1), "100 % done, 2 MB/s, 0 s left");
}

TEST(ProgressLine, IsRewrittenFiveTimesASecondAndErasedAtTheEnd) {
  std::ostringstream terminal;
  double now = 10;
  const ProgressLine::Screen screen{
      .stream = terminal, .shown = true, .clock = [&] { return now; }};
  {
    ProgressLine line(screen, "a.dat", 4'000'000);
    line.add(1'000'000);
    EXPECT_EQ(terminal.str(), "");
    now = 10.2;
    line.add(2'999'999);
    now = 10.3;
    line.add(1);
    EXPECT_EQ(terminal.str(), "\r\x1b[Ka.dat: 99 % done, 20 MB/s, 1 s left");
  }
  EXPECT_EQ(terminal.str(), "\r\x1b[Ka.dat: 99 % done, 20 MB/s, 1 s left\r\x1b[K");
}

TEST(ProgressLine, WritesNothingUnlessShown) {
  std::ostringstream log;
  double now = 0;
  const ProgressLine::Screen screen{.stream = log, .clock = [&] { return now; }};
  {
    ProgressLine line(screen, "a.dat", 10);
    now = 5;
    line.add(5);
  }
  EXPECT_EQ(log.str(), "");
}

TEST(ProgressClock, CountsSeconds) {
  const Clock clock = system_clock_of_progress();
  const double before = clock();
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  const double passed = clock() - before;
  EXPECT_GE(passed, 0.02);
  EXPECT_LT(passed, 15);  // seconds, not milliseconds, even on a busy machine
}

}  // namespace
}  // namespace veldmark::companion
