#include "companion/digits.h"

#include <gtest/gtest.h>

namespace veldmark::companion {
namespace {

TEST(Digits, AreTheTenOfAscii) {
  EXPECT_TRUE(is_digit('0'));
  EXPECT_TRUE(is_digit('9'));
  EXPECT_FALSE(is_digit('0' - 1));
  EXPECT_FALSE(is_digit('9' + 1));
  EXPECT_FALSE(is_digit('\xb2'));
}

TEST(Digits, ANumberHasNothingElse) {
  EXPECT_TRUE(is_number("007"));
  EXPECT_FALSE(is_number(""));
  EXPECT_FALSE(is_number("-7"));
  EXPECT_FALSE(is_number("7 "));
}

TEST(Digits, SpellANumber) {
  EXPECT_EQ(number_of("0"), 0);
  EXPECT_EQ(number_of("007"), 7);
  EXPECT_EQ(number_of("987654321"), 987654321);
}

TEST(Digits, AShapeIsMatchedWhole) {
  EXPECT_TRUE(has_shape("1901-12", "dddd-dd"));
  EXPECT_FALSE(has_shape("1901-1", "dddd-dd"));
  EXPECT_FALSE(has_shape("1901-123", "dddd-dd"));
  EXPECT_FALSE(has_shape("1901_12", "dddd-dd"));
  EXPECT_FALSE(has_shape("x901-12", "dddd-dd"));
}

}  // namespace
}  // namespace veldmark::companion
