#include "extract/decimal_text.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace veldmark::extract {
namespace {

// Halves are exact in binary; they round to even.
TEST(DecimalText, RoundsToItsDecimals) {
  EXPECT_EQ(decimal_text(2.5, 0), "2");
  EXPECT_EQ(decimal_text(-0.5, 2), "-0.50");
  EXPECT_EQ(decimal_text(0.125, 2), "0.12");
  EXPECT_EQ(decimal_text(0.375, 2), "0.38");
  EXPECT_EQ(decimal_text(72.84, 1), "72.8");
  EXPECT_EQ(decimal_text(-999999999999999, 9), "-999999999999999.000000000");
  const std::string largest = decimal_text(-std::numeric_limits<double>::max(), 9);
  EXPECT_EQ(largest.substr(0, 20), "-1797693134862315708");
  EXPECT_EQ(largest.size(), 320U);
}

TEST(ShortDecimalText, HasNoMoreDecimalsThanItNeeds) {
  EXPECT_EQ(short_decimal_text(60.25), "60.25");
  EXPECT_EQ(short_decimal_text(-78), "-78");
  EXPECT_EQ(short_decimal_text(100), "100");
  EXPECT_EQ(short_decimal_text(282.3 - 360), "-77.7");
  EXPECT_EQ(short_decimal_text(1.0 / 3), "0.333333333");
  EXPECT_EQ(short_decimal_text(-0.0), "0");
}

}  // namespace
}  // namespace veldmark::extract
