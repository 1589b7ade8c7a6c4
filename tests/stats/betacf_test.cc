#include "stats/betacf.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

#include "plain_statistics.h"
#include "reference/reference_values.h"
#include "statistics_support.h"

namespace veldmark {
namespace {

// Relative errors over the table, for a and b up to 10, 200 and 1500.
TEST(Betacf, IsWithinTheStatedErrorOfTheTrueValue) {
  constexpr std::array<double, 3> kBudget = {4e-7, 4.5e-6, 1.4e-6};
  std::array<double, 3> largest{};
  for (const reference::BetacfValue& known : reference::kBetacf) {
    const double error =
        std::fabs(betacf(known.a, known.b, known.x) / known.value - 1.0);
    const auto group = static_cast<std::size_t>(known.group);
    largest.at(group) = std::max(largest.at(group), error);
  }
  for (std::size_t group = 0; group < largest.size(); ++group) {
    EXPECT_LE(largest.at(group), kBudget.at(group)) << group;
  }
}

TEST(Betacf, IsOneAtZero) { EXPECT_EQ(betacf(3.5F, 7.0F, 0.0F), 1.0F); }

TEST(Betacf, IsNanForNan) {
  EXPECT_TRUE(std::isnan(betacf(2.0F, 3.0F, std::numeric_limits<float>::quiet_NaN())));
}

TEST(Betacf, HasTheBitsOfThePlainDefinition) {
  Generator generator(7);
  for (int i = 0; i < 20000; ++i) {
    const std::uint32_t largest = i % 4 == 0 ? 4000 : 60;
    const float a = static_cast<float>(1 + generator.below(largest)) * 0.5F;
    const float b = static_cast<float>(1 + generator.below(largest)) * 0.5F;
    const float x = static_cast<float>(generator.below(1000001)) * 1e-6F;
    const plain::Fraction expected = plain::betacf(a, b, x);
    ASSERT_TRUE(same_bits(betacf(a, b, x), plain::as_float(expected.h)))
        << a << ' ' << b << ' ' << x;
  }
}

// Compares one value with the plain definition and counts in `seen` which denominators
// that had to replace.
void expect_plain(float a, float b, float x, std::array<int, plain::kPlaces>& seen) {
  const plain::Fraction expected = plain::betacf(a, b, x);
  EXPECT_TRUE(same_bits(betacf(a, b, x), plain::as_float(expected.h)))
      << a << ' ' << b << ' ' << x;
  for (std::size_t place = 0; place < seen.size(); ++place) {
    seen.at(place) += expected.substitutions.at(place);
  }
}

// A denominator that would be zero becomes 1e-30, at each of the five places. Most of
// them need arguments that betai passes on only after reporting a bad x.
TEST(Betacf, ReplacesEveryDenominatorOfZero) {
  std::array<int, plain::kPlaces> seen{};
  for (int a = -24; a <= 24; ++a) {
    for (int b = -24; b <= 24; ++b) {
      for (int x = -24; x <= 24; ++x) {
        expect_plain(static_cast<float>(a) / 4.0F, static_cast<float>(b) / 4.0F,
                     static_cast<float>(x) / 8.0F, seen);
      }
    }
  }
  for (const int count : seen) {
    EXPECT_GT(count, 0);
  }
}

// Kept on purpose: after 100 iterations the last value is returned.
TEST(Betacf, ReturnsTheLastValueAfterAHundredIterations) {
  const float a = 500000.0F;
  const float x = 0.4999F;
  const plain::Fraction expected = plain::betacf(a, a, x);
  ASSERT_EQ(expected.steps, 101);
  EXPECT_TRUE(std::isfinite(betacf(a, a, x)));
  EXPECT_TRUE(same_bits(betacf(a, a, x), plain::as_float(expected.h)));
}

}  // namespace
}  // namespace veldmark
