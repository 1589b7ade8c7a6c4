#include "catalogue/row_format.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "selection/grid_geometry.h"
#include "util/fixed_field.h"

namespace veldmark {
namespace {

GridRanges columns(float minLon, float maxLon, const GridRanges& previous = {}) {
  return find_ranges({.maxLat = 10, .minLat = -10, .maxLon = maxLon, .minLon = minLon},
                     RowOrder::kSouthFirst, previous);
}

// Returns a row format without its padding: "40i5" reads forty fields, "1800x" skips
// characters.
std::string written(const FieldGroups& format) {
  const auto in_five = [](std::int32_t number) { return fixed_integer(number, 5); };
  const std::int32_t skipped_before = 5 * (format.first.first_field - 1);
  const std::string blanks(12, ' ');
  if (format.second.count == 0) {
    return skipped_before > 0
               ? "(" + in_five(skipped_before) + "x," + in_five(format.first.count) +
                     "i5)"
               : "(" + blanks.substr(0, 7) + in_five(format.first.count) + "i5)";
  }
  const std::int32_t gap = 5 * (format.second.first_field - 1 - format.first.count);
  return "(" + in_five(format.first.count) + "i5," +
         (gap > 0 ? in_five(gap) + "x," : blanks.substr(0, 7)) +
         in_five(format.second.count) + "i5)";
}

// Returns the text of the row format and checks that the groups agree with it.
std::string text_of(const GridRanges& ranges) {
  std::string text(row_format(ranges).trimmed());
  EXPECT_EQ(written(field_groups(ranges)), text);
  EXPECT_EQ(row_format(ranges).view().size(), 65U);
  return text;
}

TEST(RowFormat, ForOneRangeSkipsTheFieldsBeforeIt) {
  EXPECT_EQ(text_of(columns(0, 20)), "( 1800x,   40i5)");
  EXPECT_EQ(text_of(columns(-0.5F, 0.5F)), "( 1795x,    2i5)");
  EXPECT_EQ(text_of(columns(0.25F, 20.25F)), "( 1805x,   40i5)");
  EXPECT_EQ(text_of(columns(179.75F, 179.75F)), "( 3595x,    1i5)");
}

TEST(RowFormat, ForOneRangeFromTheFirstColumnSkipsNothing) {
  EXPECT_EQ(text_of(columns(-180, 180)), "(         720i5)");
}

TEST(RowFormat, ForTwoRangesSkipsTheFieldsBetween) {
  EXPECT_EQ(text_of(columns(170, -170)), "(   20i5, 3400x,   20i5)");
  EXPECT_EQ(text_of(columns(175, -175)), "(   10i5, 3500x,   10i5)");
  EXPECT_EQ(text_of(columns(170, -180)), "(    0i5, 3500x,   20i5)");
  EXPECT_EQ(text_of(columns(179.75F, -179.75F)), "(    1i5, 3590x,    1i5)");
  EXPECT_EQ(text_of(columns(0.5F, 0)), "(  360i5,    5x,  359i5)");
}

TEST(RowFormat, ForRangesThatMeetOrOverlapReadsThemBackToBack) {
  EXPECT_EQ(text_of(columns(0.5F, 0.25F)), "(  361i5,         359i5)");
  EXPECT_EQ(text_of(columns(180, -170)), "(   20i5,         721i5)");
  const GridRanges sticky = columns(0, 20, columns(170, -170));
  EXPECT_EQ(text_of(sticky), "(  400i5,         360i5)");
}

// A line in which field c contains c.
std::string numbered_line() {
  std::string line;
  for (std::int32_t field = 1; field <= 720; ++field) line += fixed_integer(field, 5);
  return line;
}

RowValues read_numbered(const GridRanges& ranges) {
  RowValues values{};
  values.fill(-1);
  EXPECT_TRUE(read_row(numbered_line(), field_groups(ranges), values));
  return values;
}

TEST(ReadRow, PutsFieldCIntoColumnC) {
  const RowValues values = read_numbered(columns(0, 20));
  for (std::size_t column = 0; column <= 720; ++column) {
    const bool requested = 361 <= column && column <= 400;
    ASSERT_EQ(values[column], requested ? static_cast<std::int16_t>(column) : -1);
  }
}

TEST(ReadRow, ReadsBothRanges) {
  const RowValues values = read_numbered(columns(170, -170));
  for (std::size_t column = 0; column <= 720; ++column) {
    const bool requested = (1 <= column && column <= 20) || 701 <= column;
    ASSERT_EQ(values[column], requested ? static_cast<std::int16_t>(column) : -1);
  }
}

// Kept on purpose: the second range is read right after the first.
TEST(ReadRow, ShiftsTheSecondOfOverlappingRanges) {
  const RowValues values = read_numbered(columns(0, 20, columns(170, -170)));
  for (std::size_t column = 1; column <= 720; ++column) {
    const std::size_t field = column <= 360 ? column : column + 40;
    ASSERT_EQ(values[column], field <= 720 ? static_cast<std::int16_t>(field) : 0)
        << column;
  }
}

TEST(ReadRow, FieldsOfARangeFromColumnZeroKeepTheirColumns) {
  const RowValues values = read_numbered(columns(180, 180));
  for (std::size_t column = 1; column <= 720; ++column) {
    ASSERT_EQ(values[column], static_cast<std::int16_t>(column));
  }
}

TEST(ReadRow, StoresModulo65536) {
  const FieldGroups first_column{.first = {1, 1, 1}, .second = {}};
  const auto stored = [&](const char* field) {
    RowValues values{};
    EXPECT_TRUE(read_row(field, first_column, values)) << field;
    return values[1];
  };
  EXPECT_EQ(stored("99999"), -31073);
  EXPECT_EQ(stored("65536"), 0);
  EXPECT_EQ(stored("65535"), -1);
  EXPECT_EQ(stored("40000"), -25536);
  EXPECT_EQ(stored("32768"), -32768);
  EXPECT_EQ(stored("64537"), -999);
  EXPECT_EQ(stored("-9999"), -9999);
  EXPECT_EQ(stored("     "), 0);
  EXPECT_EQ(stored("1 2 3"), 123);
}

TEST(ReadRow, RefusesLettersAndLinesThatEndTooEarly) {
  RowValues values{};
  const FieldGroups two_columns{.first = {2, 2, 2}, .second = {}};
  EXPECT_TRUE(read_row("xxxxx    1    2yyyyy", two_columns, values));
  EXPECT_TRUE(read_row("xxxxx    1    2", two_columns, values));
  EXPECT_FALSE(read_row("         1    ", two_columns, values));
  EXPECT_FALSE(read_row("         1", two_columns, values));
  EXPECT_FALSE(read_row("", two_columns, values));
  EXPECT_FALSE(read_row("         1   2x", two_columns, values));
  EXPECT_FALSE(read_row("        1.    2", two_columns, values));
}

TEST(FirstBadField, IsCountedFromTheBeginningOfTheLine) {
  const FieldGroups groups{.first = {2, 2, 2}, .second = {5, 5, 2}};
  EXPECT_EQ(first_bad_field("x        2    3x        5    6", groups), 0);
  EXPECT_EQ(first_bad_field("    1x   2x   3    4    5    6", groups), 2);
  EXPECT_EQ(first_bad_field("    1    2x   3    4x   5    6", groups), 3);
  EXPECT_EQ(first_bad_field("    1    2    3    4x   5x   6", groups), 5);
  EXPECT_EQ(first_bad_field("    1    2    3    4    5    ", groups), 6);
}

TEST(ReadRow, AcceptsAnEmptyLineIfNoFieldsAreRead) {
  RowValues values{};
  EXPECT_TRUE(read_row("", FieldGroups{}, values));
}

}  // namespace
}  // namespace veldmark
