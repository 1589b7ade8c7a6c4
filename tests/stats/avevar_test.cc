#include "stats/avevar.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "plain_statistics.h"
#include "statistics_support.h"

namespace veldmark {
namespace {

struct Moments {
  float ave = -1.0F;
  float var = -1.0F;
};

Moments moments(const std::vector<float>& data) {
  Moments out;
  avevar(data, static_cast<std::int32_t>(data.size()), out.ave, out.var);
  return out;
}

TEST(Avevar, DividesByOneLessThanTheCount) {
  const Moments got = moments({1, 2, 3, 4});
  EXPECT_EQ(got.ave, 2.5F);
  EXPECT_EQ(got.var, 5.0F / 3.0F);
}

TEST(Avevar, UsesOnlyTheFirstValues) {
  const std::vector<float> data = {1, 3, 1000};
  Moments got;
  avevar(data, 2, got.ave, got.var);
  EXPECT_EQ(got.ave, 2.0F);
  EXPECT_EQ(got.var, 2.0F);
}

TEST(Avevar, IsNanForAnEmptySample) {
  const Moments got = moments({});
  EXPECT_TRUE(std::isnan(got.ave));
  EXPECT_TRUE(std::isnan(got.var));
}

// The variance is 0/0.
TEST(Avevar, HasANanVarianceForOneValue) {
  const Moments got = moments({7.25F});
  EXPECT_EQ(got.ave, 7.25F);
  EXPECT_TRUE(std::isnan(got.var));
}

TEST(Avevar, MatchesKnownVariancesOfFrostDays) {
  EXPECT_FLOAT_EQ(moments(frost_days({100, 250, 300, 500, 900, 1200, 1100, 800, 600,
                                      400, 200, 150}))
                      .var,
                  14.310605F);
  EXPECT_FLOAT_EQ(
      moments(frost_days({90, 260, 310, 480, 950, 1250, 1000, 850, 580, 420, 180, 160}))
          .var,
      14.6099234F);
  EXPECT_TRUE(same_bits(moments(frost_days({1, 2, 3, 4, 5})).var, 2.49999983e-4F));
  EXPECT_TRUE(same_bits(moments(frost_days({2, 4, 6, 8, 10})).var, 9.99999931e-4F));
}

struct SeededVariances {
  std::uint32_t seed;
  std::int32_t n1;
  std::int32_t n2;
  float var1;
  float var2;
};

TEST(Avevar, MatchesKnownVariancesOfGeneratedSamples) {
  for (const SeededVariances& known :
       {SeededVariances{1, 120, 120, 79.4726334F, 45.3043289F},
        SeededVariances{2, 12, 12, 109.894356F, 57.6843719F},
        SeededVariances{3, 180, 180, 85.3406143F, 46.7493401F},
        SeededVariances{4, 12, 348, 99.0287552F, 51.1886864F},
        SeededVariances{5, 696, 696, 83.7053528F, 50.9615936F}}) {
    const auto data1 = frost_days(Generator(known.seed).values(known.n1, 0, 3100));
    const auto data2 =
        frost_days(Generator(known.seed + 100).values(known.n2, 0, 2500));
    EXPECT_TRUE(same_bits(moments(data1).var, known.var1)) << known.seed;
    EXPECT_TRUE(same_bits(moments(data2).var, known.var2)) << known.seed;
  }
}

// Kept on purpose: a constant sample is not treated specially.
TEST(Avevar, GivesAConstantATinyOrNegativeVarianceByRounding) {
  EXPECT_TRUE(same_bits(moments(constant_sample(300, 1313)).var, 1.90111767e-16F));
  EXPECT_TRUE(same_bits(moments(constant_sample(732, 1313)).var, -6.22089425e-16F));
  EXPECT_TRUE(same_bits(moments(constant_sample(12, 681)).var, 0.0F));
  EXPECT_TRUE(same_bits(moments(constant_sample(300, 681)).var, 4.75279418e-17F));
  for (std::size_t n = 2; n <= 288; ++n) {
    ASSERT_TRUE(same_bits(moments(constant_sample(n, 500)).var, 0.0F)) << n;
  }
}

TEST(Avevar, HasTheBitsOfThePlainDefinitionForEveryConstant) {
  for (std::int32_t stored = 0; stored <= 3100; ++stored) {
    const auto data =
        constant_sample(static_cast<std::size_t>(2 + stored % 400), stored);
    const Moments got = moments(data);
    const plain::MeanAndVariance expected = plain::avevar(data);
    ASSERT_TRUE(same_bits(got.ave, plain::as_float(expected.ave))) << stored;
    ASSERT_TRUE(same_bits(got.var, plain::as_float(expected.var))) << stored;
  }
}

// Dividing the stored hundredths by 100 is not the same as multiplying by 0.01.
TEST(FrostDays, AreMultipliedNotDivided) {
  std::vector<std::int32_t> different;
  for (std::int32_t stored = 0; stored <= 3100; ++stored) {
    const auto divided = static_cast<float>(stored / 100.0);
    if (frost_days({stored}).front() != divided) {
      different.push_back(stored);
    }
  }
  ASSERT_EQ(different.size(), 869U);
  different.resize(6);
  EXPECT_EQ(different, (std::vector<std::int32_t>{5, 9, 10, 15, 18, 20}));
}

}  // namespace
}  // namespace veldmark
