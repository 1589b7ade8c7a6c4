// Compares all functions that convert a field with a plain one, on all fields made of
// the characters that occur in fields and two others.

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/field_conversion.h"
#include "catalogue/field_conversion_avx2.h"
#include "catalogue/row_format.h"
#include "support/plain/fields.h"
#include "support/sweep.h"
#include "util/fixed_field.h"

namespace veldmark {
namespace {

using testing::for_each_text;
using testing::record_cases;

// 14 characters, so 537,824 fields of five.
constexpr std::string_view kAlphabet = " +-0123456789x";

using Value = std::optional<std::int16_t>;

template <typename Convert>
Value converted(Convert convert, const std::string& field) {
  std::int16_t value = 0;
  if (!convert(field, &value)) {
    return std::nullopt;
  }
  return value;
}

constexpr std::size_t kAllTexts = 537'824;  // 14 to the fifth

void sweep(Value (*convert)(const std::string&)) {
  record_cases(for_each_text(kAlphabet, kFieldWidth,
                             [&](const std::string& field) {
                               ASSERT_EQ(convert(field), plain::kept_of_field(field))
                                   << '"' << field << '"';
                             }),
               kAllTexts);
}

TEST(FieldSweep, ParseInteger) {
  sweep([](const std::string& field) -> Value {
    const std::optional<std::int32_t> value = parse_integer(field);
    return value ? Value(plain::stored_value(*value)) : std::nullopt;
  });
}

TEST(FieldSweep, ConvertFields) {
  sweep([](const std::string& field) { return converted(convert_fields, field); });
}

TEST(FieldSweep, ConvertFieldsByTables) {
  sweep([](const std::string& field) {
    return converted(convert_fields_by_tables, field);
  });
}

// read_row defines what a line means.
TEST(FieldSweep, ReadRow) {
  sweep([](const std::string& field) -> Value {
    static constexpr FieldGroups kOneField{.first = {2, 2, 1}, .second = {}};
    RowValues values{};
    if (!read_row("    7" + field, kOneField, values)) {
      return std::nullopt;
    }
    return values[2];
  });
}

TEST(FieldSweep, AreIntegers) {
  record_cases(
      for_each_text(kAlphabet, kFieldWidth,
                    [](const std::string& field) {
                      const std::string among = " -999" + field + " -999";
                      const bool expected = plain::integer(field).has_value();
                      ASSERT_EQ(are_integers(among, " -999 -999 -999"), expected)
                          << field;
                    }),
      kAllTexts);
}

// At each of twelve positions: in the first six fields of a vector, in the second six,
// and among the last fields, which are converted by the tables.
TEST(FieldSweep, ConvertFieldsAtEveryPlace) {
  const std::string others =
      " -999    1-9999   12 1234    0   -5 9999  123    8 4321  -77";
  const std::vector<std::int16_t> values{-999, 1,    -9999, 12, 1234, 0,
                                         -5,   9999, 123,   8,  4321, -77};
  std::size_t place = 0;
  record_cases(for_each_text(
                   kAlphabet, kFieldWidth,
                   [&](const std::string& field) {
                     std::string fields = others;
                     fields.replace(place * kFieldWidth, kFieldWidth, field);
                     std::vector<std::int16_t> got(values.size());
                     const Value expected = plain::kept_of_field(field);
                     ASSERT_EQ(convert_fields(fields, got.data()), expected.has_value())
                         << fields;
                     if (expected) {
                       std::vector<std::int16_t> expected_values = values;
                       expected_values[place] = *expected;
                       ASSERT_EQ(got, expected_values) << fields;
                     }
                     place = (place + 5) % values.size();
                   }),
               kAllTexts);
}

// The vector code stops before a field that is not simple; what it has converted until
// then is right.
TEST(FieldSweep, ConvertFieldsAvx2) {
  if (!has_avx2()) {
    GTEST_SKIP() << "this processor has no such vectors";
  }
  std::size_t converted_fields = 0;
  record_cases(
      for_each_text(
          kAlphabet, kFieldWidth,
          [&](const std::string& field) {
            const std::string fields =
                "   12" + field + " -999    0" + field + "    1    2\n";
            std::array<std::int16_t, 7> values{};
            const std::string_view without_end(fields.data(), fields.size() - 1);
            const std::size_t count = convert_fields_avx2(without_end, values.data());
            ASSERT_TRUE(count == 0 || count == kFieldsPerVector ||
                        count == values.size());
            converted_fields += count;
            for (std::size_t i = 0; i < count; ++i) {
              ASSERT_EQ(Value(values[i]), plain::kept_of_field(fields.substr(i * 5, 5)))
                  << fields;
            }
          }),
      kAllTexts);
  EXPECT_GT(converted_fields, 100000U);
}

}  // namespace
}  // namespace veldmark
