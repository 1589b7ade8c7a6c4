#include "extract/parallel_parts.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <array>
#include <atomic>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace veldmark::extract {
namespace {

TEST(RunParts, EachThingIsInOnePart) {
  for (const std::size_t parts : {1, 2, 3, 4}) {
    for (const std::size_t all : {0, 1, 2, 3, 24, 25}) {
      std::vector<std::atomic<int>> done(all);
      run_parts(parts, [&](const Part& part) {
        for (std::size_t i = part.begin(all); i < part.end(all); ++i) {
          ++done[i];
        }
      });
      for (const std::atomic<int>& count : done) {
        EXPECT_EQ(count, 1);
      }
    }
  }
}

// Every part waits for the others to have begun.
TEST(RunParts, PartsRunAtTheSameTime) {
  constexpr int kParts = 3;
  std::atomic<int> begun = 0;
  run_parts(kParts, [&](const Part& /*part*/) {
    ++begun;
    while (begun < kParts) {
      std::this_thread::yield();
    }
  });
  EXPECT_EQ(begun, kParts);
}

// The last part fails first; the failure thrown is still that of the lowest failed
// part, and the parts after that one are cancelled.
TEST(RunParts, TheLowestFailedPartIsReported) {
  std::atomic<bool> last_failed = false;
  std::atomic<bool> third_stopped = false;
  try {
    run_parts(4, [&](const Part& part) {
      if (part.index() == 3) {
        last_failed = true;
        throw std::runtime_error("the last");
      }
      while (!last_failed) {
        std::this_thread::yield();
      }
      if (part.index() == 1) {
        throw std::runtime_error("the second");
      }
      while (part.index() == 2 && !part.is_cancelled()) {
        std::this_thread::yield();
      }
      third_stopped = third_stopped || part.index() == 2;
      EXPECT_TRUE(part.index() != 0 || !part.is_cancelled());
    });
    ADD_FAILURE() << "no failure";
  } catch (const std::runtime_error& error) {
    EXPECT_EQ(std::string(error.what()), "the second");
  }
  EXPECT_TRUE(third_stopped);
}

// Ends the process with status 0 if the calling thread has run all parts.
[[noreturn]] void run_without_threads() {
  // No address space for the stack of a thread.
  rlimit before{};
  ::getrlimit(RLIMIT_AS, &before);
  const rlimit none{.rlim_cur = 1, .rlim_max = before.rlim_max};
  ::setrlimit(RLIMIT_AS, &none);
  std::array<bool, 3> done{};
  const std::thread::id caller = std::this_thread::get_id();
  run_parts(done.size(), [&](const Part& part) {
    done[part.index()] = std::this_thread::get_id() == caller;
  });
  ::setrlimit(RLIMIT_AS, &before);
  std::quick_exit(done[0] && done[1] && done[2] ? 0 : 1);
}

// Needs a new process: it could reuse the stacks of earlier threads.
TEST(RunPartsDeathTest, WithoutThreadsTheCallerRunsAllParts) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer needs address space of its own";
#endif
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(run_without_threads(), ::testing::ExitedWithCode(0), "");
}

TEST(Part, IsCancelledByLowerPartsOnly) {
  const std::atomic<std::size_t> failed = 2;
  EXPECT_FALSE(Part(1, 4, failed).is_cancelled());
  EXPECT_FALSE(Part(2, 4, failed).is_cancelled());
  EXPECT_TRUE(Part(3, 4, failed).is_cancelled());
}

TEST(PartsFor, OnlyLargeWorkIsDivided) {
  constexpr std::size_t kMegabyte = 1 << 20;
  EXPECT_EQ(parts_for(0), 1U);
  EXPECT_EQ(parts_for(15 * kMegabyte), 1U);
  if (std::thread::hardware_concurrency() > 1) {
    EXPECT_EQ(parts_for(16 * kMegabyte), 2U);
  }
  EXPECT_GE(parts_for(10'000 * kMegabyte), 1U);
  EXPECT_LE(parts_for(10'000 * kMegabyte), 4U);
}

}  // namespace
}  // namespace veldmark::extract
