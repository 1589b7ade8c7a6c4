// Shared by the tests of the statistics: bit comparison, samples, and a call of ftest
// that returns all its results.

#ifndef VELDMARK_TESTS_STATS_STATISTICS_SUPPORT_H_
#define VELDMARK_TESTS_STATS_STATISTICS_SUPPORT_H_

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "stats/ftest.h"

namespace veldmark {

inline std::uint32_t bits(float value) { return std::bit_cast<std::uint32_t>(value); }

// Returns success if both have the same bits or both are NaN, whose bits don't matter.
inline ::testing::AssertionResult same_bits(float got, float expected) {
  if (bits(got) == bits(expected) || (std::isnan(got) && std::isnan(expected))) {
    return ::testing::AssertionSuccess();
  }
  return ::testing::AssertionFailure()
         << std::hex << "got " << got << " [" << bits(got) << "], expected " << expected
         << " [" << bits(expected) << "]";
}

// Returns frost days as the variance test uses them: stored hundredths times the 32-bit
// 0.01.
inline std::vector<float> frost_days(const std::vector<std::int32_t>& stored) {
  std::vector<float> sample;
  sample.reserve(stored.size());
  for (const std::int32_t value : stored) {
    sample.push_back(static_cast<float>(value) * 0.01F);
  }
  return sample;
}

inline std::vector<float> constant_sample(std::size_t count, std::int32_t stored) {
  return frost_days(std::vector<std::int32_t>(count, stored));
}

// A linear congruential generator: 31 bits of state, of which the low 8 are not used.
class Generator {
 public:
  explicit Generator(std::uint32_t seed) : state_(seed) {}

  // Returns a number in 0..bound - 1.
  std::uint32_t below(std::uint32_t bound) {
    state_ = (state_ * 1103515245U + 12345U) & 0x7FFFFFFFU;
    return (state_ >> 8U) % bound;
  }

  std::vector<std::int32_t> values(std::int32_t count, std::int32_t low,
                                   std::int32_t high) {
    std::vector<std::int32_t> out;
    for (std::int32_t i = 0; i < count; ++i) {
      const std::uint32_t offset = below(static_cast<std::uint32_t>(high - low + 1));
      out.push_back(low + static_cast<std::int32_t>(offset));
    }
    return out;
  }

 private:
  std::uint32_t state_;
};

// All results of a call of ftest.
struct FtestOutcome {
  std::int32_t d1;
  std::int32_t d2;
  float f;
  float prob;
  std::vector<std::string> bad_arguments;  // the texts reported, in order
};

inline FtestOutcome run_ftest(const std::vector<float>& data1,
                              const std::vector<float>& data2) {
  FtestOutcome out{static_cast<std::int32_t>(data1.size()),
                   static_cast<std::int32_t>(data2.size()),
                   -1.0F,
                   -1.0F,
                   {}};
  ftest(data1, out.d1, data2, out.d2, out.f, out.prob,
        [&out](std::string_view text) { out.bad_arguments.emplace_back(text); });
  return out;
}

}  // namespace veldmark

#endif  // VELDMARK_TESTS_STATS_STATISTICS_SUPPORT_H_
