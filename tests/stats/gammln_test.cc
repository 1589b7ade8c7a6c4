#include "stats/gammln.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "plain_statistics.h"
#include "reference/reference_values.h"
#include "statistics_support.h"

namespace veldmark {
namespace {

TEST(Gammln, MatchesKnownValues) {
  EXPECT_TRUE(same_bits(gammln(0.5F), 0.572364926F));
  EXPECT_TRUE(same_bits(gammln(1.0F), 0.0F));
  EXPECT_TRUE(same_bits(gammln(1.5F), -0.120782241F));
  EXPECT_TRUE(same_bits(gammln(10.0F), 12.8018274F));
  EXPECT_TRUE(same_bits(gammln(100.5F), 361.435547F));
}

// The exact value is 0. What remains is one unit in the last place of the 64-bit
// logarithm, so another library may give a different tiny number.
TEST(Gammln, HasARoundingErrorAtTwo) {
#ifdef __GLIBC__
  EXPECT_EQ(gammln(2.0F), -0x1p-51F);
#endif
  EXPECT_LT(std::fabs(gammln(2.0F)), 2e-15F);
}

// The error of the series, below 2e-10, is too small to be visible: over the whole
// table, except for the 0 at 2, the result is the 32-bit real nearest to the exact
// value.
TEST(Gammln, IsTheNearestRealToTheTrueValue) {
  for (const reference::GammlnValue& known : reference::kGammln) {
    if (known.x == 2.0F) {
      continue;
    }
    EXPECT_TRUE(same_bits(gammln(known.x), static_cast<float>(known.value))) << known.x;
  }
}

TEST(Gammln, HasTheBitsOfThePlainDefinition) {
  for (int half = 1; half <= 20000; ++half) {
    const float x = static_cast<float>(half) * 0.5F;
    ASSERT_TRUE(same_bits(gammln(x), plain::gammln(x))) << x;
  }
  for (int exponent = -100; exponent <= 100; ++exponent) {
    const float x = std::ldexp(1.37F, exponent);
    ASSERT_TRUE(same_bits(gammln(x), plain::gammln(x))) << x;
  }
}

TEST(Gammln, OverflowsToInfinity) {
  EXPECT_EQ(gammln(3.0e38F), std::numeric_limits<float>::infinity());
}

}  // namespace
}  // namespace veldmark
