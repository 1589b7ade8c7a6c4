#include "util/free_form.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <optional>
#include <random>
#include <string>

namespace veldmark {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

TEST(FirstValue, EndsAtASeparator) {
  EXPECT_EQ(first_value("5"), "5");
  EXPECT_EQ(first_value(" \t 12 13"), "12");
  EXPECT_EQ(first_value("12,13"), "12");
  EXPECT_EQ(first_value("12/13"), "12");
  EXPECT_EQ(first_value("12\t13"), "12");
  EXPECT_EQ(first_value("'a b'"), "'a");
}

TEST(FirstValue, IsEmptyOnABlankLineAndAfterALeadingSeparator) {
  EXPECT_EQ(first_value(""), "");
  EXPECT_EQ(first_value(" \t "), "");
  EXPECT_EQ(first_value(",5"), "");
  EXPECT_EQ(first_value("  /5"), "");
}

TEST(ParseLogical, IsTrueForATAfterAnOptionalFullStop) {
  for (const char* value : {"T", "t", "TRUE", "true", ".T.", ".t", "tomato"}) {
    EXPECT_TRUE(parse_logical(value)) << value;
  }
  for (const char* value : {"", "F", "f", "yes", "1", "no", ".", "..t", ".F", "xt"}) {
    EXPECT_FALSE(parse_logical(value)) << value;
  }
}

TEST(ParseReal, ReadsDecimalsWithAndWithoutExponent) {
  EXPECT_EQ(parse_real("45."), 45.0F);
  EXPECT_EQ(parse_real(".5"), 0.5F);
  EXPECT_EQ(parse_real("+45.0"), 45.0F);
  EXPECT_EQ(parse_real("-.5"), -0.5F);
  EXPECT_EQ(parse_real("4.5E1"), 45.0F);
  EXPECT_EQ(parse_real("4.5e1"), 45.0F);
  EXPECT_EQ(parse_real("4.5D1"), 45.0F);
  EXPECT_EQ(parse_real("4.5d+01"), 45.0F);
  EXPECT_EQ(parse_real("450.D-1"), 45.0F);
  EXPECT_EQ(parse_real("4"), 4.0F);
}

TEST(ParseReal, RefusesEverythingElse) {
  for (const char* value :
       {"",     ".",   "-",     "-.",   "+.",      "a.b",  "45.0N", "4.5.0",
        "4..5", "1e",  "1.e+",  ".e5",  "1.0e1.",  "1.0 ", " 1.0",  "0x1.8",
        "inf",  "nan", "1.5+5", "--1.", "1.0e1e1", "1.:",  "1./"}) {
    EXPECT_EQ(parse_real(value), std::nullopt) << value;
  }
}

TEST(ParseReal, RoundsToTheNearest32BitReal) {
  EXPECT_EQ(parse_real("90.00001"), 90.00000762939453125F);
  EXPECT_EQ(parse_real("90.000001"), 90.0F);
  EXPECT_EQ(parse_real("1.e39"), kInfinity);
  EXPECT_EQ(parse_real("-1.e39"), -kInfinity);
  EXPECT_EQ(parse_real("1.e-60"), 0.0F);
  EXPECT_EQ(std::bit_cast<std::uint32_t>(*parse_real("-0.0")), 0x80000000U);
}

TEST(FreeFormInteger, IsABlankAndTheDigits) {
  EXPECT_EQ(free_form_integer(1901), " 1901");
  EXPECT_EQ(free_form_integer(-5), " -5");
  EXPECT_EQ(free_form_integer(2147483648), " 2147483648");
}

TEST(FreeFormReal, IsABlankAndFifteenCharacters) {
  EXPECT_EQ(free_form_real(1.02091587F), "       1.0209159");
  EXPECT_EQ(free_form_real(0.963542938F), "      0.96354294");
  EXPECT_EQ(free_form_real(6.53733805e-05F), "    6.537338e-05");
  EXPECT_EQ(free_form_real(0.208000004F), "           0.208");
  EXPECT_EQ(free_form_real(-179.75F), "         -179.75");
}

TEST(FreeFormReal, TakesTheNearestOfEquallyShortDecimals) {
  EXPECT_EQ(free_form_real(684252608.0F), "     684252608.0");
  EXPECT_EQ(free_form_real(0.00065F), "         0.00065");
  EXPECT_EQ(free_form_real(0.000065F), "         6.5e-05");
}

TEST(FreeFormReal, AlwaysHasAFraction) {
  EXPECT_EQ(free_form_real(4.0F), "             4.0");
  EXPECT_EQ(free_form_real(0.0F), "             0.0");
  EXPECT_EQ(free_form_real(-0.0F), "            -0.0");
  EXPECT_EQ(free_form_real(1e20F), "         1.0e+20");
}

TEST(FreeFormReal, WritesNanAndInfinitiesAsWords) {
  EXPECT_EQ(free_form_real(std::numeric_limits<float>::quiet_NaN()),
            "             NaN");
  EXPECT_EQ(free_form_real(kInfinity), "             Inf");
  EXPECT_EQ(free_form_real(-kInfinity), "            -Inf");
}

TEST(FreeFormReal, ThatDoesNotFitIsAsterisks) {
  EXPECT_EQ(free_form_real(1169848139776.0F), " 1169848139776.0");
  EXPECT_EQ(free_form_real(-1169848139776.0F), " ***************");
}

TEST(FreeFormReal, ReadsBackToTheSameBits) {
  std::mt19937 random(20181001);
  for (int i = 0; i < 200000; ++i) {
    const auto bits = static_cast<std::uint32_t>(random());
    const auto value = std::bit_cast<float>(bits);
    if (value - value != 0.0F) continue;  // NaN and the infinities
    const std::string field = free_form_real(value);
    ASSERT_EQ(field.size(), 16U) << field;
    const std::string text = field.substr(field.find_last_of(' ') + 1);
    if (text.front() == '*') {  // 13 digits, a sign and ".0" don't fit
      ASSERT_TRUE(-1e13F < value && value <= -1e12F) << value;
      continue;
    }
    ASSERT_EQ(std::bit_cast<std::uint32_t>(std::strtof(text.c_str(), nullptr)), bits)
        << text;
  }
}

}  // namespace
}  // namespace veldmark
