// Compares ftest with the plain definition bit for bit, and with exact values.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "expect_plain_ftest.h"
#include "plain_statistics.h"
#include "reference/real_frost_series.h"
#include "reference/reference_values.h"
#include "statistics_support.h"
#include "stats/ftest.h"

namespace veldmark {
namespace {

void expect_kurtosis(const std::vector<std::int32_t>& stored1,
                     const std::vector<std::int32_t>& stored2, float expected) {
  const plain::Test got = plain::ftest(frost_days(stored1), frost_days(stored2));
  EXPECT_TRUE(same_bits(plain::as_float(got.kurtosis), expected));
}

// The pooled kurtosis is a local variable of ftest; here the plain definition itself is
// tested.
TEST(FtestExactness, PlainDefinitionHasTheKnownKurtosis) {
  expect_kurtosis({1, 2, 3, 4, 5}, {2, 4, 6, 8, 10}, 2.31200004F);
  expect_kurtosis({1, 2, 3, 4, 5}, {1, 2, 3, 4, 5}, 1.69999993F);
  expect_kurtosis({5, 5, 5, 5, 5}, {1, 2, 3, 4, 5}, 3.39999986F);
  expect_kurtosis({100, 200}, {100, 300}, 1.36000001F);
  expect_kurtosis({100, 200, 300}, {100, 300, 500}, 2.03999996F);
  constexpr std::array<float, 5> kSeeded = {2.14554024F, 1.77427769F, 1.8896687F,
                                            1.88446844F, 1.8558706F};
  for (std::size_t i = 0; i < kSeeded.size(); ++i) {
    const reference::FtestValue& known = reference::kFtest.at(i);
    expect_kurtosis(Generator(known.seed).values(known.n1, 0, 3100),
                    Generator(known.seed + 100).values(known.n2, 0, 2500),
                    kSeeded.at(i));
  }
}

// Returns one value of a sample of shape 0..9. Some shapes cannot occur in the data
// (fractions, huge and tiny values, NaN, infinities); they test the arithmetic.
float shaped_value(Generator& generator, std::uint32_t shape) {
  const auto wide = static_cast<float>(generator.below(3101));
  switch (shape) {
    case 0:  // frost days
      return wide * 0.01F;
    case 1:  // mostly none, as in the tropics
      return generator.below(40) == 0 ? wide * 0.01F : 0.0F;
    case 2:  // nearly constant
      return 13.13F + (generator.below(50) == 0 ? 1e-6F : 0.0F);
    case 3:  // two values
      return generator.below(2) == 0 ? 1.0F : 2.0F;
    case 4:  // both signs, skewed
      return (wide - 700.0F) * wide * 1e-4F;
    case 5:  // far from zero: the mean is rounded coarsely
      return 1e6F + wide * 0.1F;
    case 6:  // the fourth powers overflow
      return wide * 1e8F;
    case 7:  // the squares are below the smallest normal real
      return wide * 1e-23F;
    case 8:  // the variance overflows too
      return wide * 1e17F;
    default: {  // with NaN and infinities
      const std::uint32_t pick = generator.below(200);
      if (pick == 0) {
        return std::numeric_limits<float>::quiet_NaN();
      }
      if (pick == 1) {
        return std::numeric_limits<float>::infinity();
      }
      return wide;
    }
  }
}

std::vector<float> shaped_sample(Generator& generator, std::uint32_t largest_count) {
  const std::uint32_t shape = generator.below(10);
  std::vector<float> sample(generator.below(largest_count + 1));
  for (float& value : sample) {
    value = shaped_value(generator, shape);
  }
  return sample;
}

TEST(FtestExactness, HasTheBitsOfThePlainDefinitionForSmallSamples) {
  Generator generator(2026);
  for (int i = 0; i < 40000; ++i) {
    SCOPED_TRACE(i);
    const auto data1 = shaped_sample(generator, 36);
    const auto data2 = shaped_sample(generator, 36);
    expect_plain_ftest(data1, data2);
    if (HasFatalFailure()) {
      return;
    }
  }
}

TEST(FtestExactness, HasTheBitsOfThePlainDefinitionForLongSamples) {
  Generator generator(1901);
  for (int i = 0; i < 2000; ++i) {
    SCOPED_TRACE(i);
    const auto data1 = shaped_sample(generator, 1392);
    const auto data2 = shaped_sample(generator, 1392);
    expect_plain_ftest(data1, data2);
    if (HasFatalFailure()) {
      return;
    }
  }
}

// Every constant frost-day value, over 25 and 61 years: both variances are only
// rounding errors, of either sign.
TEST(FtestExactness, HasTheBitsOfThePlainDefinitionForEveryConstant) {
  int bad_arguments = 0;
  for (std::int32_t stored = 0; stored <= 3100; ++stored) {
    SCOPED_TRACE(stored);
    const auto data1 = constant_sample(300, stored);
    const auto data2 = constant_sample(732, stored);
    expect_plain_ftest(data1, data2);
    if (HasFatalFailure()) {
      return;
    }
    bad_arguments += plain::ftest(data1, data2).bad_arguments;
  }
  EXPECT_GT(bad_arguments, 0);
}

struct TrueValues {
  double f;
  std::int32_t d1;
  std::int32_t d2;
  double prob;
};

// The exact values are computed from the stored integers, so these errors include the
// multiplication by 0.01. The error of prob grows with the adjusted counts, because the
// logarithms inside betai do.
void expect_near(const FtestOutcome& got, const TrueValues& known) {
  EXPECT_EQ(got.d1, known.d1);
  EXPECT_EQ(got.d2, known.d2);
  EXPECT_NEAR(got.f, known.f, 2e-6 * known.f);
  const std::int32_t larger_count = std::max(known.d1, known.d2);
  const double budget = larger_count <= 100 ? 3e-6 : larger_count <= 1000 ? 3e-4 : 7e-4;
  EXPECT_NEAR(got.prob, known.prob, budget * known.prob);
}

TEST(FtestExactness, IsWithinTheStatedErrorOfTheTrueValues) {
  for (const reference::FtestValue& known : reference::kFtest) {
    SCOPED_TRACE(known.seed);
    expect_near(
        run_ftest(frost_days(Generator(known.seed).values(known.n1, 0, 3100)),
                  frost_days(Generator(known.seed + 100).values(known.n2, 0, 2500))),
        {known.f, known.d1, known.d2, known.prob});
  }
}

TEST(FtestExactness, IsWithinTheStatedErrorForRealFrostDays) {
  for (const reference::RealFrostSeries& known : reference::kRealFrostSeries) {
    SCOPED_TRACE(known.longitude);
    const auto* const cutoff = known.values.begin() + reference::kFirstSampleCount;
    const auto data1 = frost_days({known.values.begin(), cutoff});
    const auto data2 = frost_days({cutoff, known.values.end()});
    expect_plain_ftest(data1, data2);
    expect_near(run_ftest(data1, data2), {known.f, known.d1, known.d2, known.prob});
  }
}

// The report lines of the worked example in docs/variance-test.md. f has these bits;
// the last digits of prob may differ with another library.
TEST(FtestExactness, MatchesTheWorkedExampleOfTheDocumentation) {
  struct Line {
    float f;
    float prob;
  };
  constexpr std::array<Line, 3> kLines = {
      {{1.0058413F, 0.9473378F}, {1.0154765F, 0.896448F}, {1.0107181F, 0.91194385F}}};
  for (std::size_t i = 0; i < kLines.size(); ++i) {
    const auto& values = reference::kRealFrostSeries.at(i).values;
    const auto* const cutoff = values.begin() + reference::kFirstSampleCount;
    const FtestOutcome got = run_ftest(frost_days({values.begin(), cutoff}),
                                       frost_days({cutoff, values.end()}));
    EXPECT_TRUE(same_bits(got.f, kLines.at(i).f));
    EXPECT_NEAR(got.prob, kLines.at(i).prob, 1e-5 * kLines.at(i).prob);
  }
}

}  // namespace
}  // namespace veldmark
