#include "tersify/grid_content.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "raw_text.h"

namespace veldmark::tersify {
namespace {

using testing::repeated;
using Warnings = std::vector<std::string>;

// Returns a line of `columns` fields with values where `cells`, repeated, has an 'x'.
std::string line_of(const std::string& cells, const std::string& missing,
                    std::int32_t columns) {
  std::string line;
  for (std::int32_t i = 0; i < columns; ++i) {
    const char cell = cells.at(static_cast<std::size_t>(i) % cells.size());
    line += cell == 'x' ? "   17" : missing;
  }
  return line;
}

// Returns the warnings about lines with values in these cells.
Warnings warnings_of(const std::vector<std::string>& lines, const GridShape& shape,
                     const std::string& missing = " -999") {
  GridContent content(shape);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    content.add_line(static_cast<std::int64_t>(i) + 1,
                     line_of(lines[i], missing, shape.columns));
  }
  return content.warnings();
}

constexpr GridShape kSmall{.years = 1, .rows = 3, .columns = 100};

TEST(GridContent, TheSameCellsInEveryMonthGiveNoWarning) {
  EXPECT_EQ(warnings_of({"-", "-x--x", "x-", "-", "-x--x", "x-"}, kSmall), Warnings{});
}

TEST(GridContent, ALostRowIsDetected) {
  EXPECT_EQ(warnings_of({"-", "-x--x", "x-", "-x--x", "x-"}, kSmall),
            Warnings{"line 4 (year 1901, February, row 1), column 2: a value, and the "
                     "first month has none there"});
}

TEST(GridContent, AValueThatIsMissingInOneMonthIsDetected) {
  std::string row(100, 'x');
  std::string other = row;
  other[99] = '-';
  EXPECT_EQ(warnings_of({"-", row, row, "-", row, other, "x", other, row}, kSmall),
            Warnings{"line 6 (year 1901, February, row 3), column 100: no value, and "
                     "the first month has one there"});
}

TEST(GridContent, OnlyTheFirstPlaceIsNamed) {
  EXPECT_EQ(warnings_of({"-", "x", "x", "x", "-", "-"}, kSmall),
            Warnings{"line 4 (year 1901, February, row 1), column 1: a value, and the "
                     "first month has none there"});
}

TEST(GridContent, TheCodeOfTheDroughtIndexIsKnown) {
  EXPECT_EQ(warnings_of({"-", "x-", "x-", "-", "x-", "-x"}, kSmall, "-9999"),
            Warnings{"line 6 (year 1901, February, row 3), column 1: no value, and the "
                     "first month has one there"});
}

TEST(GridContent, WithoutAMissingCodeNothingIsChecked) {
  EXPECT_EQ(warnings_of({"x", "-", "x", "-", "x", "-"}, kSmall), Warnings{});
}

// The rows of a whole month with values from row `first` to row `last`.
std::vector<std::string> month_with(std::size_t first, std::size_t last) {
  std::vector<std::string> rows(360, "-");
  for (std::size_t row = first; row <= last; ++row) {
    rows[row - 1] = "-x";
  }
  return rows;
}

constexpr GridShape kWholeMonth{.years = 1, .rows = 360, .columns = 10};

TEST(GridContent, RowsOfCruTsThatRunNorthToSouthAreDetected) {
  EXPECT_EQ(warnings_of(month_with(61, 348), kWholeMonth), Warnings{});
  EXPECT_EQ(warnings_of(month_with(13, 292), kWholeMonth),
            Warnings{"line 13 (year 1901, January, row 13) has values, and south of 60 "
                     "degrees south there are none: are the rows in the wrong order?"});
  EXPECT_EQ(warnings_of(month_with(60, 60), kWholeMonth).size(), 1U);
}

TEST(GridContent, RowsOfTheDroughtIndexThatRunSouthToNorthAreDetected) {
  EXPECT_EQ(warnings_of(month_with(13, 300), kWholeMonth, "-9999"), Warnings{});
  EXPECT_EQ(warnings_of(month_with(69, 348), kWholeMonth, "-9999"),
            Warnings{"line 301 (year 1901, January, row 301) has values, and south of "
                     "60 degrees south there are none: are the rows in the wrong "
                     "order?"});
}

TEST(GridContent, BothKindsAreReported) {
  std::vector<std::string> lines = month_with(13, 13);
  lines.emplace_back("x");
  EXPECT_EQ(warnings_of(lines, kWholeMonth).size(), 2U);
}

}  // namespace
}  // namespace veldmark::tersify
