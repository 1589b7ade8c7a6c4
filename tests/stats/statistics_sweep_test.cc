// Compares the statistics with the plain definition bit for bit: all small samples, all
// arguments that small counts lead to, and very many random ones.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "expect_plain_ftest.h"
#include "plain_statistics.h"
#include "statistics_support.h"
#include "stats/avevar.h"
#include "stats/betacf.h"
#include "stats/betai.h"
#include "stats/ftest.h"
#include "stats/gammln.h"
#include "support/sweep.h"

namespace veldmark {
namespace {

using testing::record_cases;

// Returns all samples of up to `largest` values out of 0..values - 1, multiplied by the
// scale.
std::vector<std::vector<float>> all_samples(std::size_t largest, std::int32_t values) {
  std::vector<std::vector<float>> samples{{}};
  for (std::size_t done = 0; done < samples.size(); ++done) {
    if (samples[done].size() == largest) {
      continue;
    }
    for (std::int32_t value = 0; value < values; ++value) {
      std::vector<float> longer = samples[done];
      longer.push_back(static_cast<float>(value) * 0.01F);
      samples.push_back(longer);
    }
  }
  return samples;
}

// Every pair of the 364 samples of up to five of three values.
TEST(StatisticsSweep, FtestOfAllPairsOfSmallSamples) {
  const std::vector<std::vector<float>> samples = all_samples(5, 3);
  std::size_t cases = 0;
  for (const std::vector<float>& data1 : samples) {
    for (const std::vector<float>& data2 : samples) {
      expect_plain_ftest(data1, data2);
      if (HasFatalFailure()) {
        return;
      }
      ++cases;
    }
  }
  record_cases(cases, 132'496);
}

TEST(StatisticsSweep, AvevarOfAllSmallSamples) {
  const std::vector<std::vector<float>> samples = all_samples(6, 6);
  for (const std::vector<float>& data : samples) {
    float ave = 0;
    float var = 0;
    avevar(data, static_cast<std::int32_t>(data.size()), ave, var);
    const plain::MeanAndVariance expected = plain::avevar(data);
    ASSERT_TRUE(same_bits(ave, plain::as_float(expected.ave)));
    ASSERT_TRUE(same_bits(var, plain::as_float(expected.var)));
  }
  record_cases(samples.size(), 55'987);
}

// Frost days of two periods of whole years, as in reports.
TEST(StatisticsSweep, FtestOfRandomFrostDays) {
  Generator generator(19);
  std::size_t cases = 0;
  for (; cases < 6000; ++cases) {
    const auto sample = [&] {
      const auto years = static_cast<std::int32_t>(1 + generator.below(30));
      const auto largest = static_cast<std::int32_t>(1 + generator.below(3100));
      return frost_days(generator.values(12 * years, 0, largest));
    };
    expect_plain_ftest(sample(), sample());
    if (HasFatalFailure()) {
      return;
    }
  }
  record_cases(cases, 6'000);
}

// Calls `compare` for all halves of degrees of freedom up to 40, with x in hundredths
// from 0 to 1.
template <typename Compare>
void for_all_arguments(Compare compare) {
  std::size_t cases = 0;
  for (int df1 = 1; df1 <= 40; ++df1) {
    for (int df2 = 1; df2 <= 40; ++df2) {
      for (int hundredths = 0; hundredths <= 100; ++hundredths, ++cases) {
        compare(static_cast<float>(df1) * 0.5F, static_cast<float>(df2) * 0.5F,
                static_cast<float>(hundredths) * 0.01F);
        if (::testing::Test::HasFatalFailure()) {
          return;
        }
      }
    }
  }
  record_cases(cases, 161'600);
}

TEST(StatisticsSweep, BetacfOfAllSmallDegreesOfFreedom) {
  for_all_arguments([](float a, float b, float x) {
    ASSERT_TRUE(same_bits(betacf(a, b, x), plain::as_float(plain::betacf(a, b, x).h)))
        << a << ' ' << b << ' ' << x;
  });
}

TEST(StatisticsSweep, BetaiOfAllSmallDegreesOfFreedom) {
  for_all_arguments([](float a, float b, float x) {
    const float got = betai(a, b, x, [](std::string_view) {});
    ASSERT_TRUE(same_bits(got, plain::as_float(plain::betai(a, b, x).result)))
        << a << ' ' << b << ' ' << x;
  });
}

TEST(StatisticsSweep, GammlnOfQuarters) {
  std::size_t cases = 0;
  for (int quarters = 1; quarters <= 400000; ++quarters, ++cases) {
    const float x = static_cast<float>(quarters) * 0.25F;
    ASSERT_TRUE(same_bits(gammln(x), plain::gammln(x))) << x;
  }
  record_cases(cases, 400'000);
}

TEST(StatisticsSweep, AdjustedCounts) {
  std::size_t cases = 0;
  for (std::int32_t n = 0; n <= 1392; ++n) {
    for (int thousandths = 0; thousandths <= 6000; thousandths += 13, ++cases) {
      const auto count = static_cast<float>(n);
      const float kurtosis = static_cast<float>(thousandths) * 0.001F;
      ASSERT_EQ(adjusted_count(count, kurtosis), plain::adjusted_count(count, kurtosis))
          << n << ' ' << kurtosis;
    }
  }
  record_cases(cases, 643'566);
}

}  // namespace
}  // namespace veldmark
