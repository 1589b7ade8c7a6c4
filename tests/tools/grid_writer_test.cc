#include "series_to_grid/grid_writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace veldmark::series_to_grid {
namespace {

TEST(MonthSize, IsThatOfItsText) {
  EXPECT_EQ(month_size({}), 1'296'360);
  EXPECT_EQ(month_size({.field_width = kPublishedField}), 1'555'560);
}

constexpr GridForm kScpdsi = {
    .field_width = kCondensedField, .north_first = true, .MissingCode = -9999};

std::string repeated(int times, const std::string& text) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

// Returns a row of a month, counted from 1 in file order, with its newline.
std::string_view row_of(std::string_view month, std::size_t row,
                        std::size_t line_length = 3601) {
  return month.substr((row - 1) * line_length, line_length);
}

// Column 3, row 2 from the south; January is `first_value`, later months count up.
Series one_cell(int first_year, int last_year, int first_value) {
  Series series{
      .first_year = first_year, .last_year = last_year, .cells = {{3, 2, {}}}};
  for (int i = 0; i < (last_year - first_year + 1) * 12; ++i) {
    series.cells[0].values.push_back(first_value + i);
  }
  return series;
}

// Returns the field of the cell of `one_cell`, month by month.
std::vector<std::string> fields_of_the_cell(const Series& series, YearRange years,
                                            const GridForm& form = {}) {
  std::vector<std::string> fields;
  const std::size_t row = form.north_first ? 359 : 2;
  make_grid(series, years, form, [&](std::string_view month) {
    fields.emplace_back(row_of(month, row).substr(10, 5));
  });
  return fields;
}

TEST(MonthText, AMonthWithoutValuesIs360LinesOf720MissingCodes) {
  EXPECT_EQ(MonthText(GridForm{}).text(), repeated(360, repeated(720, " -999") + "\n"));
}

TEST(MonthText, TheMissingCodeOfScpdsiFillsItsField) {
  EXPECT_EQ(MonthText(kScpdsi).text(), repeated(360, repeated(720, "-9999") + "\n"));
}

TEST(MonthText, APublishedMonthHasABlankBeforeEachFiveColumns) {
  const GridForm form = {.field_width = kPublishedField};
  EXPECT_EQ(MonthText(form).text(), repeated(360, repeated(720, "  -999") + "\n"));
}

TEST(MonthText, AValueChangesTheFieldOfItsCellAndNothingElse) {
  MonthText month(GridForm{});
  month.set(/*south_row=*/2, /*GridX=*/3, 7);
  EXPECT_EQ(row_of(month.text(), 1), repeated(720, " -999") + "\n");
  EXPECT_EQ(row_of(month.text(), 2), " -999 -999    7" + repeated(717, " -999") + "\n");
  EXPECT_EQ(row_of(month.text(), 3), repeated(720, " -999") + "\n");
  EXPECT_EQ(month.text().size(), 360U * 3601U);
}

TEST(MonthText, TheFourCornersAreTheEndsOfTheFirstAndTheLastLine) {
  MonthText month(GridForm{});
  month.set(1, 1, 11);
  month.set(1, 720, 12);
  month.set(360, 1, 21);
  month.set(360, 720, 22);
  EXPECT_EQ(row_of(month.text(), 1), "   11" + repeated(718, " -999") + "   12\n");
  EXPECT_EQ(row_of(month.text(), 360), "   21" + repeated(718, " -999") + "   22\n");
}

TEST(MonthText, NorthFirstPutsTheSouthernmostRowLast) {
  MonthText month(kScpdsi);
  month.set(1, 1, 11);
  month.set(360, 2, 22);
  EXPECT_EQ(row_of(month.text(), 1), "-9999   22" + repeated(718, "-9999") + "\n");
  EXPECT_EQ(row_of(month.text(), 360), "   11" + repeated(719, "-9999") + "\n");
}

TEST(MonthText, FiveCharactersTouchTheFieldBeforeThemWhenCondensed) {
  MonthText month(GridForm{});
  month.set(1, 1, 12345);
  month.set(1, 2, -9998);
  month.set(1, 3, 99999);
  EXPECT_EQ(row_of(month.text(), 1).substr(0, 20), "12345-999899999 -999");
}

TEST(MonthText, FiveCharactersTouchNothingWhenPublished) {
  MonthText month({.field_width = kPublishedField});
  month.set(1, 1, 12345);
  month.set(1, 2, -9998);
  month.set(1, 3, 0);
  EXPECT_EQ(row_of(month.text(), 1, 4321).substr(0, 24), " 12345 -9998     0  -999");
}

TEST(MonthText, AShorterNumberLeavesNothingOfALongerOne) {
  MonthText month(GridForm{});
  month.set(1, 1, 12345);
  month.set(1, 1, 6);
  EXPECT_EQ(row_of(month.text(), 1).substr(0, 10), "    6 -999");
}

TEST(MakeGrid, TheYearsFrom1901OnAreMadeMonthByMonth) {
  const Series series = one_cell(1901, 1902, 100);
  std::vector<std::string> expected;
  for (int value = 100; value < 124; ++value) {
    expected.push_back("  " + std::to_string(value));
  }
  EXPECT_EQ(fields_of_the_cell(series, {1901, 1902}), expected);
}

TEST(MakeGrid, YearsBeforeTheFirstOneAskedAreMissingAndLaterOnesLeftOut) {
  const std::vector<std::string> fields =
      fields_of_the_cell(one_cell(1901, 1904, 100), {1902, 1903});
  ASSERT_EQ(fields.size(), 36U);
  EXPECT_EQ(fields[0], " -999");
  EXPECT_EQ(fields[11], " -999");
  EXPECT_EQ(fields[12], "  112");
  EXPECT_EQ(fields[35], "  135");
}

TEST(MakeGrid, YearsThatTheSeriesLacksAreMissing) {
  const std::vector<std::string> fields =
      fields_of_the_cell(one_cell(1902, 1902, 100), {1901, 1904});
  ASSERT_EQ(fields.size(), 48U);
  EXPECT_EQ(fields[11], " -999");
  EXPECT_EQ(fields[12], "  100");
  EXPECT_EQ(fields[23], "  111");
  EXPECT_EQ(std::count(fields.begin() + 24, fields.end(), " -999"), 24);
}

TEST(MakeGrid, ASeriesOfOtherYearsGivesAnEmptyGrid) {
  for (const int year : {1850, 1903, 2017}) {
    const std::vector<std::string> fields =
        fields_of_the_cell(one_cell(year, year, 100), {1901, 1902});
    EXPECT_EQ(fields, std::vector<std::string>(24, " -999")) << year;
  }
}

TEST(MakeGrid, ASeriesThatBeginsBefore1901IsReadFrom1901On) {
  const std::vector<std::string> fields =
      fields_of_the_cell(one_cell(1899, 1902, 100), {1901, 1901});
  ASSERT_EQ(fields.size(), 12U);
  EXPECT_EQ(fields[0], "  124");
  EXPECT_EQ(fields[11], "  135");
}

TEST(MakeGrid, TheMissingCodeOfTheSeriesBecomesThatOfTheGrid) {
  Series series = one_cell(1901, 1901, 1);
  series.cells[0].values[4] = kSeriesMissing;
  EXPECT_EQ(fields_of_the_cell(series, {1901, 1901}).at(4), " -999");
  EXPECT_EQ(fields_of_the_cell(series, {1901, 1901}, kScpdsi).at(4), "-9999");
  EXPECT_EQ(fields_of_the_cell(series, {1901, 1901}, kScpdsi).at(5), "    6");
}

TEST(MakeGrid, TheFullSpanHas1392Months) {
  int months = 0;
  make_grid(one_cell(2016, 2016, 1), {1901, 2016}, {},
            [&](std::string_view /*month*/) { ++months; });
  EXPECT_EQ(months, 1392);
  EXPECT_EQ(count_grid_months(2016), 1392);
}

}  // namespace
}  // namespace veldmark::series_to_grid
