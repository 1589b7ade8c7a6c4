#include "util/interrupt_watch.h"

#include <gtest/gtest.h>

#include <csignal>

namespace veldmark {
namespace {

TEST(InterruptWatch, NothingIsCaughtAtFirst) {
  const InterruptWatch watch;
  EXPECT_EQ(InterruptWatch::signal_caught(), 0);
}

TEST(InterruptWatch, EachStopSignalIsCaught) {
  for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGXCPU}) {
    const InterruptWatch watch;
    std::raise(number);
    EXPECT_EQ(InterruptWatch::signal_caught(), number);
  }
}

TEST(InterruptWatch, TheFileSizeSignalIsIgnored) {
  const InterruptWatch watch;
  std::raise(SIGXFSZ);
  EXPECT_EQ(InterruptWatch::signal_caught(), 0);
}

TEST(InterruptWatch, AnIgnoredSignalStaysIgnored) {
  auto* const before = std::signal(SIGHUP, SIG_IGN);
  {
    const InterruptWatch watch;
    std::raise(SIGHUP);
    EXPECT_EQ(InterruptWatch::signal_caught(), 0);
  }
  std::signal(SIGHUP, before);
}

TEST(InterruptWatch, TheExceptionNamesTheSignal) {
  const InterruptWatch watch;
  InterruptWatch::throw_if_caught();
  std::raise(SIGQUIT);
  try {
    InterruptWatch::throw_if_caught();
    ADD_FAILURE() << "went on";
  } catch (const Interrupted& interrupted) {
    EXPECT_EQ(interrupted.signal, SIGQUIT);
  }
}

TEST(InterruptWatch, AfterwardsNothingIsCaught) {
  {
    const InterruptWatch watch;
    std::raise(SIGINT);
  }
  EXPECT_EQ(InterruptWatch::signal_caught(), 0);
}

void watch_and_then_raise(int number) {
  { const InterruptWatch watch; }
  std::raise(number);
}

TEST(InterruptWatch, AfterwardsSigintKills) {
  EXPECT_EXIT(watch_and_then_raise(SIGINT), ::testing::KilledBySignal(SIGINT), "");
}

TEST(InterruptWatch, AfterwardsSigtermKills) {
  EXPECT_EXIT(watch_and_then_raise(SIGTERM), ::testing::KilledBySignal(SIGTERM), "");
}

TEST(InterruptWatch, AfterwardsSighupKills) {
  EXPECT_EXIT(watch_and_then_raise(SIGHUP), ::testing::KilledBySignal(SIGHUP), "");
}

}  // namespace
}  // namespace veldmark
