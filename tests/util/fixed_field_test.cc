#include "util/fixed_field.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <string>

namespace veldmark {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

TEST(FixedInteger, IsRightAligned) {
  EXPECT_EQ(fixed_integer(40, 4), "  40");
  EXPECT_EQ(fixed_integer(-358, 4), "-358");
  EXPECT_EQ(fixed_integer(1901, 5), " 1901");
  EXPECT_EQ(fixed_integer(259200, 6), "259200");
  EXPECT_EQ(fixed_integer(-14360, 6), "-14360");
  EXPECT_EQ(fixed_integer(-32768, 6), "-32768");
  EXPECT_EQ(fixed_integer(-64080, 8), "  -64080");
  EXPECT_EQ(fixed_integer(-257760, 10), "   -257760");
}

TEST(FixedInteger, ThatDoesNotFitIsAsterisks) {
  EXPECT_EQ(fixed_integer(12345, 4), "****");
  EXPECT_EQ(fixed_integer(-9999, 4), "****");
  EXPECT_EQ(fixed_integer(123456, 5), "*****");
  EXPECT_EQ(fixed_integer(-257760, 6), "******");
}

TEST(FixedReal, IsRightAligned) {
  EXPECT_EQ(fixed_real(0.0F, 8, 2), "    0.00");
  EXPECT_EQ(fixed_real(0.5F, 8, 2), "    0.50");
  EXPECT_EQ(fixed_real(-179.75F, 8, 2), " -179.75");
  EXPECT_EQ(fixed_real(999.0F, 8, 2), "  999.00");
  EXPECT_EQ(fixed_real(90.01F, 6, 2), " 90.01");
  EXPECT_EQ(fixed_real(-0.5F, 6, 2), " -0.50");
  EXPECT_EQ(fixed_real(180.01F, 7, 2), " 180.01");
  EXPECT_EQ(fixed_real(-0.25F, 9, 3), "   -0.250");
  EXPECT_EQ(fixed_real(51.25F, 10, 3), "    51.250");
}

TEST(FixedReal, KeepsTheSignOfZero) {
  EXPECT_EQ(fixed_real(-0.0F, 8, 2), "   -0.00");
  EXPECT_EQ(fixed_real(-0.0F, 7, 3), " -0.000");
}

TEST(FixedReal, RoundsTiesToEvenOnTheExactBinaryValue) {
  EXPECT_EQ(fixed_real(10.125F, 8, 2), "   10.12");
  EXPECT_EQ(fixed_real(10.375F, 8, 2), "   10.38");
  EXPECT_EQ(fixed_real(10.005F, 8, 2), "   10.01");  // 10.00500011 as a 32-bit real
  EXPECT_EQ(fixed_real(90.005F, 6, 2), " 90.00");    // 90.00499725 as a 32-bit real
  EXPECT_EQ(fixed_real(3.0625F, 7, 3), "  3.062");
}

TEST(FixedReal, ThatDoesNotFitIsAsterisks) {
  EXPECT_EQ(fixed_real(99999.0F, 8, 2), "99999.00");
  EXPECT_EQ(fixed_real(999999.0F, 8, 2), "********");
  EXPECT_EQ(fixed_real(-99999.0F, 8, 2), "********");
  EXPECT_EQ(fixed_real(-100.0F, 6, 2), "******");
  EXPECT_EQ(fixed_real(1000.0F, 6, 2), "******");
  EXPECT_EQ(fixed_real(std::numeric_limits<float>::max(), 8, 2), "********");
}

TEST(FixedReal, WritesNanAndInfinitiesAsWords) {
  EXPECT_EQ(fixed_real(std::numeric_limits<float>::quiet_NaN(), 7, 3), "    NaN");
  EXPECT_EQ(fixed_real(-std::numeric_limits<float>::quiet_NaN(), 7, 3), "    NaN");
  EXPECT_EQ(fixed_real(kInfinity, 7, 2), "    Inf");
  EXPECT_EQ(fixed_real(-kInfinity, 7, 2), "   -Inf");
  EXPECT_EQ(fixed_real(kInfinity, 3, 1), "Inf");
  EXPECT_EQ(fixed_real(kInfinity, 2, 1), "**");
  EXPECT_EQ(fixed_real(-kInfinity, 3, 1), "***");
}

TEST(ParseInteger, SkipsBlanksAndTabs) {
  EXPECT_EQ(parse_integer("12"), 12);
  EXPECT_EQ(parse_integer(" 7"), 7);
  EXPECT_EQ(parse_integer("1 2"), 12);
  EXPECT_EQ(parse_integer("19 5"), 195);
  EXPECT_EQ(parse_integer("\t-\t3 "), -3);
  EXPECT_EQ(parse_integer("+0012"), 12);
}

TEST(ParseInteger, ReadsAnEmptyFieldAsZero) {
  EXPECT_EQ(parse_integer(""), 0);
  EXPECT_EQ(parse_integer("     "), 0);
  EXPECT_EQ(parse_integer(" \t "), 0);
}

TEST(ParseInteger, RefusesWhatIsNotAnInteger) {
  for (const char* field :
       {"3x", "1.5", "--1", "+-1", "1-", "1+2", "-", "+", "- ", "1\r", "a", "1,2"}) {
    EXPECT_EQ(parse_integer(field), std::nullopt) << field;
  }
  EXPECT_EQ(parse_integer(std::string_view("1\0", 2)), std::nullopt);
}

TEST(ParseInteger, AgreesOnEverySingleCharacter) {
  const std::string digits = "0123456789";
  for (int code = 0; code < 256; ++code) {
    const std::string field(1, static_cast<char>(code));
    const std::size_t digit = digits.find(field);
    std::optional<std::int32_t> expected;
    if (digit != std::string::npos) {
      expected = static_cast<std::int32_t>(digit);
    } else if (field == " " || field == "\t") {
      expected = 0;
    }
    EXPECT_EQ(parse_integer(field), expected) << code;
  }
}

TEST(ParseInteger, RefusesValuesBeyond32Bits) {
  EXPECT_EQ(parse_integer("2147483647"), 2147483647);
  EXPECT_EQ(parse_integer("-2147483648"), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(parse_integer("2147483648"), std::nullopt);
  EXPECT_EQ(parse_integer("-2147483649"), std::nullopt);
  EXPECT_EQ(parse_integer("99999999999999999999999999"), std::nullopt);
  EXPECT_EQ(parse_integer("00000000000000000000000001"), 1);
}

// Returns the same, as a person would find it: remove the blanks, then look.
std::optional<std::int32_t> plainly_parsed(const std::string& field) {
  std::string rest;
  for (const char character : field) {
    if (character != ' ' && character != '\t') rest += character;
  }
  if (rest.empty()) return 0;
  const bool has_sign = rest[0] == '+' || rest[0] == '-';
  const std::string digits = rest.substr(has_sign ? 1 : 0);
  if (digits.empty() || digits.find_first_not_of("0123456789") != std::string::npos) {
    return std::nullopt;
  }
  return std::stoi(rest);
}

TEST(ParseInteger, AgreesWithAPlainDefinitionOnAllShortFields) {
  const std::string alphabet = " \t+-019.x";
  std::size_t checked = 0;
  std::string field;
  const auto check_longer = [&](auto&& self) -> void {
    ASSERT_EQ(parse_integer(field), plainly_parsed(field)) << '"' << field << '"';
    ++checked;
    if (field.size() == 5) return;
    for (const char character : alphabet) {
      field += character;
      self(self);
      field.pop_back();
    }
  };
  check_longer(check_longer);
  EXPECT_EQ(checked, 1U + 9 + 81 + 729 + 6561 + 59049);
}

}  // namespace
}  // namespace veldmark
