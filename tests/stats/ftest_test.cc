#include "stats/ftest.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "plain_statistics.h"
#include "statistics_support.h"

namespace veldmark {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
const std::vector<std::int32_t> kYearJ = {100,  250, 300, 500, 900, 1200,
                                          1100, 800, 600, 400, 200, 150};
const std::vector<std::int32_t> kYearK = {90,   260, 310, 480, 950, 1250,
                                          1000, 850, 580, 420, 180, 160};

// f and the counts have exactly these values. The last bits of prob depend on the
// 32-bit logarithm and exponential; these are the ones of the GNU C library 2.36 on
// x86-64.
struct Expected {
  std::int32_t d1;
  std::int32_t d2;
  float f;
  float prob;
};

void expect_test(const std::vector<std::int32_t>& stored1,
                 const std::vector<std::int32_t>& stored2, const Expected& expected) {
  const FtestOutcome got = run_ftest(frost_days(stored1), frost_days(stored2));
  EXPECT_EQ(got.d1, expected.d1);
  EXPECT_EQ(got.d2, expected.d2);
  EXPECT_TRUE(same_bits(got.f, expected.f));
  EXPECT_NEAR(got.prob, expected.prob, 1e-5 * expected.prob);
#ifdef __GLIBC__
  EXPECT_TRUE(same_bits(got.prob, expected.prob));
#endif
  EXPECT_TRUE(got.bad_arguments.empty());
}

void expect_nan(const std::vector<float>& data1, const std::vector<float>& data2) {
  const FtestOutcome got = run_ftest(data1, data2);
  EXPECT_TRUE(std::isnan(got.f)) << got.f;
  EXPECT_TRUE(std::isnan(got.prob)) << got.prob;
  EXPECT_EQ(got.d1, 2);
  EXPECT_EQ(got.d2, 2);
  EXPECT_TRUE(got.bad_arguments.empty());
}

TEST(Ftest, ComparesTwoFrostDayYears) {
  expect_test(kYearJ, kYearK,
              {.d1 = 21, .d2 = 21, .f = 0x1.055ABEp+0F, .prob = 0x1.ED558p-1F});
}

TEST(Ftest, DividesTheLargerVarianceByTheSmallerInEitherOrder) {
  expect_test(kYearK, kYearJ,
              {.d1 = 21, .d2 = 21, .f = 0x1.055ABEp+0F, .prob = 0x1.ED558p-1F});
}

TEST(Ftest, ComparesSmallSamples) {
  expect_test({1, 2, 3, 4, 5}, {2, 4, 6, 8, 10},
              {.d1 = 5, .d2 = 5, .f = 0x1p+2F, .prob = 0x1.A9FBE8p-3F});
  expect_test({100, 200}, {100, 300},
              {.d1 = 2, .d2 = 2, .f = 0x1p+2F, .prob = 0x1.2E404Ep-1F});
}

// The quotient is 2.94, which is truncated to 2, not rounded to 3.
TEST(Ftest, TruncatesTheAdjustedCounts) {
  expect_test({100, 200, 300}, {100, 300, 500},
              {.d1 = 2, .d2 = 2, .f = 0x1p+2F, .prob = 0x1.2E404Ep-1F});
}

struct SeededTest {
  std::uint32_t seed;
  std::int32_t n1;
  std::int32_t n2;
  Expected expected;
};

TEST(Ftest, ComparesGeneratedSamples) {
  for (const SeededTest& known :
       {SeededTest{.seed = 1,
       .n1 = 120,
       .n2 = 120,
       .expected = {.d1 = 206,
                   .d2 = 206,
                   .f = 0x1.C112EEp+0F,
                   .prob = 0x1.123222p-14F}},
        SeededTest{.seed = 2,
        .n1 = 12,
        .n2 = 12,
        .expected = {.d1 = 25, .d2 = 25, .f = 0x1.E7B47Ap+0F, .prob = 0x1.F0D64p-4F}},
        SeededTest{
            .seed = 3,
 .n1 = 180,
 .n2 = 180,
 .expected = {.d1 = 399, .d2 = 399, .f = 0x1.D3538Ap+0F, .prob = 0x1.64BB68p-29F}},
        SeededTest{.seed = 4,
        .n1 = 12,
        .n2 = 348,
        .expected = {.d1 = 22, .d2 = 781, .f = 0x1.EF40D2p+0F, .prob = 0x1.DC37CCp-7F}},
        SeededTest{
            .seed = 5,
 .n1 = 696,
 .n2 = 696,
 .expected = {.d1 = 1620, .d2 = 1620, .f = 0x1.A47C16p+0F, .prob = 0x1.263E16p-75F}}}) {
    SCOPED_TRACE(known.seed);
    expect_test(Generator(known.seed).values(known.n1, 0, 3100),
                Generator(known.seed + 100).values(known.n2, 0, 2500), known.expected);
  }
}

// f is computed even if neither variance is larger.
TEST(Ftest, IsOneForEqualVariances) {
  expect_test({1, 2, 3, 4, 5}, {1, 2, 3, 4, 5},
              {.d1 = 8, .d2 = 8, .f = 0x1p+0F, .prob = 0x1.FFFFE8p-1F});
}

// Both variances are 3, with counts 3 and 4. The second is the numerator, so df1 = d2 -
// 1 and df2 = d1 - 1. With the first as numerator prob would be the same in exact
// arithmetic, but its bits would differ.
TEST(Ftest, TakesTheSecondOfEqualVariancesAsNumerator) {
  const FtestOutcome got = run_ftest({9, 9, 6}, {6, 3, 6, 7});
  EXPECT_EQ(got.d1, 3);
  EXPECT_EQ(got.d2, 4);
  EXPECT_EQ(got.f, 1.0F);
  const auto prob_of = [](float df1, float df2) {
    const float x = df2 / (df1 + df2);
    const float p =
        2.0F * plain::as_float(plain::betai(0.5F * df2, df1 * 0.5F, x).result);
    return p > 1.0F ? 2.0F - p : p;
  };
  ASSERT_NE(bits(prob_of(3.0F, 2.0F)), bits(prob_of(2.0F, 3.0F)));
  EXPECT_TRUE(same_bits(got.prob, prob_of(3.0F, 2.0F)));
}

// A sample of one value: both adjusted counts are 2.
TEST(Ftest, IsNanForASampleOfOneValue) {
  expect_nan(frost_days({250}), frost_days(kYearK));
  expect_nan(frost_days(kYearJ), frost_days({250}));
  expect_nan(frost_days({250}), frost_days({260}));
}

TEST(Ftest, IsNanForAnEmptySample) {
  expect_nan({}, frost_days(kYearK));
  expect_nan(frost_days(kYearJ), {});
  expect_nan({}, {});
}

// This happens with every variable but frost days: the scale is 0, so all values are.
TEST(Ftest, IsNanForSamplesOfZeros) {
  for (const std::size_t n1 : {0U, 1U, 2U, 12U, 300U, 1392U}) {
    for (const std::size_t n2 : {0U, 1U, 2U, 12U, 732U, 1392U}) {
      expect_nan(constant_sample(n1, 0), constant_sample(n2, 0));
    }
  }
}

TEST(Ftest, IsNanForAConstantThatIsSummedExactly) {
  for (std::size_t n1 = 2; n1 <= 288; n1 += 13) {
    expect_nan(constant_sample(n1, 500), constant_sample(288, 500));
  }
}

// The smaller variance is 0, the larger is not.
TEST(Ftest, IsInfiniteIfOnlyOneSampleVaries) {
  expect_test({5, 5, 5, 5, 5}, {1, 2, 3, 4, 5},
              {.d1 = 3, .d2 = 3, .f = kInfinity, .prob = 0});
  expect_test({1, 2, 3, 4, 5}, {5, 5, 5, 5, 5},
              {.d1 = 3, .d2 = 3, .f = kInfinity, .prob = 0});
}

// A constant whose variance is a rounding error is treated as if it varied.
TEST(Ftest, TreatsARoundingErrorAsAVariance) {
  const FtestOutcome got =
      run_ftest(constant_sample(12, 681), constant_sample(300, 681));
  EXPECT_EQ(got.d1, 2);
  EXPECT_EQ(got.d2, 2);
  EXPECT_TRUE(same_bits(got.f, kInfinity));
  EXPECT_TRUE(same_bits(got.prob, 0.0F));
  EXPECT_TRUE(got.bad_arguments.empty());
}

// Kept on purpose: rounding makes one variance negative, so f is negative and the
// argument of betai is above 1. That is reported once, and the calculation continues.
TEST(Ftest, ReportsTheBadArgumentOfANegativeF) {
  const FtestOutcome got =
      run_ftest(constant_sample(300, 1313), constant_sample(732, 1313));
  EXPECT_EQ(got.d1, 2);
  EXPECT_EQ(got.d2, 2);
  EXPECT_EQ(got.f, -0x1.38EFBAp-2F);
  EXPECT_TRUE(std::isnan(got.prob));
  EXPECT_EQ(got.bad_arguments, std::vector<std::string>{"bad argument x in betai"});
}

// The other sample varies: f is negative and huge, and x is below 0.
TEST(Ftest, ReportsTheBadArgumentWhenOnlyOneSampleIsConstant) {
  const FtestOutcome got = run_ftest(frost_days(kYearJ), constant_sample(732, 1313));
  EXPECT_LT(got.f, -1e16F);
  EXPECT_TRUE(std::isnan(got.prob));
  EXPECT_EQ(got.bad_arguments, std::vector<std::string>{"bad argument x in betai"});
}

// 37 hundredths, over 1 and 61 years: the smaller variance is negative, the larger is
// 0.
TEST(Ftest, IsMinusZeroForZeroOverANegativeVariance) {
  const FtestOutcome got = run_ftest(constant_sample(12, 37), constant_sample(732, 37));
  EXPECT_TRUE(same_bits(got.f, -0.0F));
  EXPECT_TRUE(same_bits(got.prob, 0.0F));
  EXPECT_TRUE(got.bad_arguments.empty());
}

TEST(Ftest, SetsCountsAndFBeforeTheHandlerIsCalled) {
  const auto data1 = constant_sample(300, 1313);
  const auto data2 = constant_sample(732, 1313);
  std::int32_t n1 = 300;
  std::int32_t n2 = 732;
  float f = 0.0F;
  float prob = 0.0F;
  int calls = 0;
  ftest(data1, n1, data2, n2, f, prob, [&](std::string_view) {
    ++calls;
    EXPECT_EQ(n1, 2);
    EXPECT_EQ(n2, 2);
    EXPECT_EQ(f, -0x1.38EFBAp-2F);
  });
  EXPECT_EQ(calls, 1);
}

TEST(Ftest, UsesOnlyTheFirstValues) {
  std::vector<float> data1 = frost_days({1, 2, 3, 4, 5});
  std::vector<float> data2 = frost_days({2, 4, 6, 8, 10});
  data1.push_back(1e6F);
  data2.push_back(1e6F);
  std::int32_t n1 = 5;
  std::int32_t n2 = 5;
  float f = 0.0F;
  float prob = 0.0F;
  ftest(data1, n1, data2, n2, f, prob, [](std::string_view) {});
  EXPECT_EQ(n1, 5);
  EXPECT_EQ(n2, 5);
  EXPECT_EQ(f, 4.0F);
}

// Kurtosis 3, as of normally distributed data: n - 1 in exact arithmetic. Where the
// quotient is rounded to just below that, truncation leaves n - 2.
TEST(AdjustedCount, IsOneLessThanTheCountAtKurtosisThreeApartFromRounding) {
  std::vector<std::int32_t> two_less;
  for (std::int32_t n = 12; n <= 1392; n += 12) {
    const std::int32_t d = adjusted_count(static_cast<float>(n), 3.0F);
    if (d == n - 2) {
      two_less.push_back(n);
    } else {
      EXPECT_EQ(d, n - 1);
    }
  }
  EXPECT_EQ(two_less, (std::vector<std::int32_t>{72, 84, 192, 300, 648, 732, 828, 984,
                                                 1116, 1392}));
}

// Counts that no sample has, and quotients for which truncation does not give 2 or
// more.
TEST(AdjustedCount, IsAtLeastTwo) {
  EXPECT_EQ(adjusted_count(12.0F, 0.5F), 2);  // -75.43
  EXPECT_EQ(adjusted_count(12.0F, 40.0F), 2);
  EXPECT_EQ(adjusted_count(12.0F, std::numeric_limits<float>::quiet_NaN()), 2);
  EXPECT_EQ(adjusted_count(12.0F, kInfinity), 2);
  EXPECT_EQ(adjusted_count(3.0F, 0.0F), 2);        // +infinity
  EXPECT_EQ(adjusted_count(3.0F, 1e-9F), 2);       // 6e9
  EXPECT_EQ(adjusted_count(3.0F, -1e-9F), 2);      // -6e9
  EXPECT_EQ(adjusted_count(3.0F, 0x1.8p-29F), 2);  // 2^31
  EXPECT_EQ(adjusted_count(1.0F, 3.0F), 2);        // the ratio inside is -2/0
  EXPECT_EQ(adjusted_count(0.0F, 3.0F), 2);        // a quotient of 0
}

TEST(AdjustedCount, HasTheValueOfThePlainDefinition) {
  for (std::int32_t n = 0; n <= 1392; ++n) {
    for (int sixteenths = 0; sixteenths <= 80; ++sixteenths) {
      const auto count = static_cast<float>(n);
      const float kurtosis = static_cast<float>(sixteenths) / 16.0F;
      ASSERT_EQ(adjusted_count(count, kurtosis), plain::adjusted_count(count, kurtosis))
          << n << ' ' << kurtosis;
    }
  }
}

TEST(AdjustedCount, ReachesTheLargestThatFits) {
  EXPECT_EQ(adjusted_count(3.0F, 6.0F / 2147483520.0F), 2147483520);
  EXPECT_EQ(adjusted_count(12.0F, 8.6F), 3);
  EXPECT_EQ(adjusted_count(12.0F, 9.0F), 2);
}

}  // namespace
}  // namespace veldmark
