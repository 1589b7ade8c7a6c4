#include "stats/betai.h"

#include <gtest/gtest.h>

#include <array>
#include <cfenv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "plain_statistics.h"
#include "reference/reference_values.h"
#include "statistics_support.h"

namespace veldmark {
namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

// Calls betai and fails the test if it reports a bad argument.
float betai_quietly(float a, float b, float x) {
  return betai(a, b, x, [](std::string_view text) { ADD_FAILURE() << text; });
}

std::vector<std::string> reports_of(float a, float b, float x, float& result) {
  std::vector<std::string> reports;
  result =
      betai(a, b, x, [&reports](std::string_view text) { reports.emplace_back(text); });
  return reports;
}

TEST(Betai, MatchesKnownValues) {
  EXPECT_NEAR(betai_quietly(0.5F, 0.5F, 0.5F), 0.5F, 0.5e-5);
  EXPECT_NEAR(betai_quietly(2.0F, 3.0F, 0.25F), 0.261718631F, 0.26e-5);
  EXPECT_NEAR(betai_quietly(10.0F, 10.0F, 0.5F), 0.49999851F, 0.5e-5);
  EXPECT_NEAR(betai_quietly(5.5F, 7.0F, 0.3F), 0.158661708F, 0.15e-5);
  EXPECT_NEAR(betai_quietly(2.0F, 3.0F, 0.1F), 0.0523F, 0.5e-6);
}

// The bits depend on the 32-bit logarithm and exponential; these are the ones of the
// GNU C library 2.36.
#ifdef __GLIBC__
TEST(Betai, MatchesKnownBitsWithTheGnuLibrary) {
  EXPECT_EQ(betai_quietly(0.5F, 0.5F, 0.5F), 0x1p-1F);
  EXPECT_EQ(betai_quietly(2.0F, 3.0F, 0.25F), 0x1.0BFFF8p-2F);
  EXPECT_EQ(betai_quietly(10.0F, 10.0F, 0.5F), 0x1.FFFF9Cp-2F);
}
#endif

// The prefactor is 0 there, without the logarithm of 0.
TEST(Betai, IsZeroAtZeroAndOneAtOne) {
  std::feclearexcept(FE_DIVBYZERO);
  for (const float a : {0.5F, 1.0F, 7.0F, 800.0F}) {
    for (const float b : {0.5F, 1.0F, 7.0F, 800.0F}) {
      EXPECT_TRUE(same_bits(betai_quietly(a, b, 0.0F), 0.0F));
      EXPECT_TRUE(same_bits(betai_quietly(a, b, 1.0F), 1.0F));
    }
  }
  EXPECT_EQ(std::fetestexcept(FE_DIVBYZERO), 0);
}

// Compares betai at the bound of every small a and b, or at the last x below it, with
// the branch that should be taken. Returns how often the other branch has different
// bits.
int expect_branch(bool on_the_bound) {
  int telling = 0;
  for (int half_a = 1; half_a <= 40; ++half_a) {
    for (int half_b = 1; half_b <= 40; ++half_b) {
      const float a = static_cast<float>(half_a) * 0.5F;
      const float b = static_cast<float>(half_b) * 0.5F;
      const float bound = plain::as_float(plain::beta_bound(a, b));
      const float x = on_the_bound ? bound : std::nextafter(bound, 0.0F);
      const float below = plain::as_float(plain::beta_below(a, b, x));
      const float above = plain::as_float(plain::beta_above(a, b, x));
      telling += bits(below) != bits(above) ? 1 : 0;
      EXPECT_TRUE(same_bits(betai_quietly(a, b, x), on_the_bound ? above : below))
          << a << ' ' << b;
    }
  }
  return telling;
}

// From the bound on, itself included, the second branch is taken.
TEST(Betai, TakesTheSecondBranchOnTheBound) {
  EXPECT_GT(expect_branch(/*on_the_bound=*/true), 100);
  EXPECT_EQ(betai_quietly(1.0F, 1.0F, 0.5F), 0.5F);
}

TEST(Betai, TakesTheFirstBranchJustBelowTheBound) {
  EXPECT_GT(expect_branch(/*on_the_bound=*/false), 100);
}

// Errors over the table, for a and b up to 10, 200 and 1500: relative below the bound,
// absolute from there on. They come from the prefactor, whose logarithms grow with a
// and b and are rounded to 32 bits.
TEST(Betai, IsWithinTheStatedErrorOfTheTrueValue) {
  constexpr std::array<double, 3> kRelativeBelow = {3e-6, 6e-5, 1e-3};
  constexpr std::array<double, 3> kAbsoluteAbove = {3e-7, 1.2e-5, 7e-5};
  for (const reference::BetaiValue& known : reference::kBetai) {
    const auto group = static_cast<std::size_t>(known.group);
    const bool below = known.x < plain::beta_bound(known.a, known.b).value;
    EXPECT_NEAR(
        betai_quietly(known.a, known.b, known.x), known.value,
        below ? kRelativeBelow.at(group) * known.value : kAbsoluteAbove.at(group))
        << known.a << ' ' << known.b << ' ' << known.x;
  }
}

TEST(Betai, HasTheBitsOfThePlainDefinition) {
  Generator generator(11);
  for (int i = 0; i < 20000; ++i) {
    const std::uint32_t largest = i % 4 == 0 ? 4000 : 60;
    const float a = static_cast<float>(1 + generator.below(largest)) * 0.5F;
    const float b = static_cast<float>(1 + generator.below(largest)) * 0.5F;
    const float x = static_cast<float>(generator.below(1000001)) * 1e-6F;
    ASSERT_TRUE(same_bits(betai_quietly(a, b, x),
                          plain::as_float(plain::betai(a, b, x).result)))
        << a << ' ' << b << ' ' << x;
  }
}

TEST(Betai, ReportsABadArgumentOnceAndContinues) {
  for (const float x :
       {-0.5F, -1e-30F, 1.0000001F, 1.5F, std::numeric_limits<float>::infinity(),
        -std::numeric_limits<float>::infinity()}) {
    float result = 0.0F;
    EXPECT_EQ(reports_of(2.0F, 3.0F, x, result),
              std::vector<std::string>{"bad argument x in betai"})
        << x;
    EXPECT_TRUE(std::isnan(result)) << x;
  }
}

// NaN < 0 and NaN > 1 are both false.
TEST(Betai, IsNanForNanWithoutAReport) {
  EXPECT_TRUE(std::isnan(betai_quietly(2.0F, 3.0F, kNan)));
}

TEST(Betai, PassesOnExceptionsOfTheHandler) {
  EXPECT_THROW(
      betai(1.0F, 1.0F, -0.5F,
            [](std::string_view) { throw std::runtime_error("end of input"); }),
      std::runtime_error);
}

}  // namespace
}  // namespace veldmark
