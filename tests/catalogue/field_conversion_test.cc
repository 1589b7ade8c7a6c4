#include "catalogue/field_conversion.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "catalogue/field_conversion_avx2.h"
#include "util/fixed_field.h"

namespace veldmark {
namespace {

// Returns a field as the definition reads it; nullopt if it is not an integer.
std::optional<std::int16_t> plainly_converted(const std::string& field) {
  const std::optional<std::int32_t> value = parse_integer(field);
  if (!value) return std::nullopt;
  return static_cast<std::int16_t>(*value);
}

std::optional<std::int16_t> converted(const std::string& field) {
  std::int16_t value = 0;
  if (!convert_fields(field, &value)) return std::nullopt;
  return value;
}

// Returns the same for the field at `place` of eight, enough for the vector code.
std::optional<std::int16_t> converted_among_others(const std::string& field,
                                                   std::size_t place) {
  std::string fields = " -999    1-9999   12 1234    0   -5 9999";
  fields.replace(place * 5, 5, field);
  std::array<std::int16_t, 8> values{};
  if (!convert_fields(fields, values.data())) return std::nullopt;
  std::array<std::int16_t, 8> expected{-999, 1, -9999, 12, 1234, 0, -5, 9999};
  const std::int16_t value = values[place];
  expected[place] = value;
  EXPECT_EQ(values, expected) << "its neighbours, " << field;
  return value;
}

TEST(ConvertFields, ReadsSimpleFields) {
  EXPECT_EQ(converted("    0"), 0);
  EXPECT_EQ(converted("   -5"), -5);
  EXPECT_EQ(converted(" -999"), -999);
  EXPECT_EQ(converted("-9999"), -9999);
  EXPECT_EQ(converted("13498"), 13498);
  EXPECT_EQ(converted("99999"), -31073);
  EXPECT_EQ(converted("00012"), 12);
}

TEST(ConvertFields, ReadsOtherFieldsLikeTheDefinition) {
  EXPECT_EQ(converted("     "), 0);
  EXPECT_EQ(converted("1 2 3"), 123);
  EXPECT_EQ(converted("+ 7  "), 7);
  EXPECT_EQ(converted("-    "), std::nullopt);
  EXPECT_EQ(converted("   x1"), std::nullopt);
  EXPECT_EQ(converted("1-234"), std::nullopt);
}

TEST(ConvertFields, AgreesWithTheDefinitionOnAllFieldsOfTheseCharacters) {
  const std::string alphabet = " +-0123456789x";
  std::string field(5, ' ');
  std::size_t place = 0;
  for (const char c0 : alphabet) {
    for (const char c1 : alphabet) {
      for (const char c2 : alphabet) {
        for (const char c3 : alphabet) {
          for (const char c4 : alphabet) {
            field = {c0, c1, c2, c3, c4};
            const auto expected = plainly_converted(field);
            ASSERT_EQ(converted(field), expected) << '"' << field << '"';
            place = (place + 1) % 6;
            ASSERT_EQ(converted_among_others(field, place), expected)
                << '"' << field << '"';
          }
        }
      }
    }
  }
}

TEST(ConvertFields, AgreesWithTheDefinitionForAnyOneByte) {
  for (const std::string usual : {"  123", " -999", "12345", "    7", "-1234"}) {
    for (std::size_t place = 0; place < 5; ++place) {
      for (int byte = 0; byte < 256; ++byte) {
        std::string field = usual;
        field[place] = static_cast<char>(byte);
        ASSERT_EQ(converted(field), plainly_converted(field)) << usual << place << byte;
      }
    }
  }
}

// Blanks, an optional minus and digits up to the right edge.
bool is_usual(const std::string& field) {
  std::size_t begin = field.find_first_not_of(' ');
  if (begin == std::string::npos) return false;
  if (field[begin] == '-') ++begin;
  return begin < field.size() &&
         field.find_first_not_of("0123456789", begin) == std::string::npos;
}

// A simple field that is not converted here would go through parse_integer, correctly
// but slowly.
TEST(ConvertFieldByTables, ConvertsSimpleFieldsAndNoOthers) {
  const std::string alphabet = " +-059x";
  std::string field(5, ' ');
  for (std::size_t number = 0; number < 16807; ++number) {
    std::size_t rest = number;
    for (char& character : field) {
      character = alphabet[rest % alphabet.size()];
      rest /= alphabet.size();
    }
    std::int16_t value = 7;
    ASSERT_EQ(convert_field_by_tables(field.data(), value), is_usual(field))
        << '"' << field << '"';
    ASSERT_EQ(value, is_usual(field) ? plainly_converted(field) : 7) << field;
  }
}

TEST(ConvertFieldByTables, ConvertsAllDigitsAtAllPositions) {
  for (std::size_t place = 0; place < 5; ++place) {
    for (int byte = 0; byte < 256; ++byte) {
      std::string field = "11111";
      field[place] = static_cast<char>(byte);
      std::int16_t value = 7;
      ASSERT_EQ(convert_field_by_tables(field.data(), value), is_usual(field))
          << place << ' ' << byte;
    }
  }
}

// Neighbouring fields must not affect each other, however many there are.
TEST(ConvertFields, AgreesWithTheDefinitionOnRandomRuns) {
  std::mt19937 random(7);
  for (int i = 0; i < 20000; ++i) {
    const std::size_t count = random() % 70;
    std::string fields;
    std::vector<std::int16_t> expected;
    bool all_integers = true;
    for (std::size_t f = 0; f < count; ++f) {
      std::string field =
          fixed_integer(static_cast<std::int32_t>(random() % 21000) - 9999, 5);
      if (random() % 500 == 0) field[random() % 5] = " -+x\n"[random() % 5];
      const std::optional<std::int16_t> value = plainly_converted(field);
      all_integers = all_integers && value.has_value();
      expected.push_back(value.value_or(0));
      fields += field;
    }
    std::vector<std::int16_t> values(count);
    ASSERT_EQ(convert_fields(fields, values.data()), all_integers);
    if (all_integers) {
      ASSERT_EQ(values, expected);
    }
  }
}

// Returns every field of blanks, an optional minus and some digits up to the right
// edge.
std::vector<std::string> usual_fields() {
  std::vector<std::string> fields;
  for (const std::string digits : {"0", "9", "10", "59", "908", "3471", "0026"}) {
    for (const std::string sign : {"", "-"}) {
      const std::string text = sign + digits;
      fields.push_back(std::string(5 - text.size(), ' ') + text);
    }
  }
  fields.emplace_back("12345");
  return fields;
}

// The vector code must not leave simple fields to the slower code.
TEST(ConvertFieldsAvx2, ConvertsSimpleFieldsAtAnyPosition) {
  if (!has_avx2()) {
    GTEST_SKIP() << "this processor has no such vectors";
  }
  const std::vector<std::string> usual = usual_fields();
  for (std::size_t count = 0; count <= 40; ++count) {
    for (std::size_t first = 0; first < usual.size(); ++first) {
      std::string fields;
      std::vector<std::int16_t> expected;
      for (std::size_t i = 0; i < count; ++i) {
        const std::string& field = usual[(first + i) % usual.size()];
        fields += field;
        expected.push_back(plainly_converted(field).value());
      }
      std::vector<std::int16_t> values(count);
      const std::size_t converted = convert_fields_avx2(fields, values.data());
      ASSERT_EQ(converted, count < kFieldsPerVector ? 0 : count);
      if (converted > 0) {
        ASSERT_EQ(values, expected);
      }
    }
  }
}

TEST(ConvertFieldsAvx2, StopsBeforeSixFieldsOfWhichOneIsNotSimple) {
  if (!has_avx2()) {
    GTEST_SKIP() << "this processor has no such vectors";
  }
  const std::string six = "    1    2    3    4    5    6";
  for (std::size_t place = 0; place < 6; ++place) {
    for (const std::string unusual :
         {"     ", " 1  2", "   +1", "-   2", "   x1", "12-34"}) {
      std::string fields = six + six;
      fields.replace((6 + place) * 5, 5, unusual);
      std::array<std::int16_t, 12> values{};
      EXPECT_EQ(convert_fields_avx2(fields, values.data()), 6U) << place << unusual;
      EXPECT_EQ(values[5], 6);
      EXPECT_EQ(values[6], 0) << "converted although it is unusual";
    }
  }
}

TEST(ConvertFieldsAvx2, TellsDigitsFromAllOtherBytes) {
  if (!has_avx2()) {
    GTEST_SKIP() << "this processor has no such vectors";
  }
  for (std::size_t place = 0; place < 30; ++place) {
    for (int byte = 0; byte < 256; ++byte) {
      std::string fields(30, '1');
      fields[place] = static_cast<char>(byte);
      const bool usual = ('0' <= byte && byte <= '9') ||
                         (place % 5 == 0 && (byte == ' ' || byte == '-'));
      std::array<std::int16_t, 6> values{};
      ASSERT_EQ(convert_fields_avx2(fields, values.data()), usual ? 6U : 0U)
          << place << ' ' << byte;
    }
  }
}

TEST(AreIntegers, ChecksFieldsWithoutTheMissingCode) {
  const std::string missing = " -999 -999 -999";
  EXPECT_TRUE(are_integers(missing, missing));
  EXPECT_TRUE(are_integers(" -999   12 -999", missing));
  EXPECT_TRUE(are_integers("     1 2 3    0", missing));
  EXPECT_FALSE(are_integers(" -999 -9x9 -999", missing));
  EXPECT_FALSE(are_integers("x   1   12 -999", missing));
  EXPECT_FALSE(are_integers(" -999 -999 -99\n", missing));
  EXPECT_TRUE(are_integers("", ""));
}

}  // namespace
}  // namespace veldmark
