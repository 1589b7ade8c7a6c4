#include "selection/grid_geometry.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>

namespace veldmark {

// Prints a region in messages of failed tests.
void PrintTo(const SearchRegion& region, std::ostream* out) {
  *out << "lat " << region.minLat << ".." << region.maxLat << " lon " << region.minLon
       << ".." << region.maxLon;
}

namespace {

constexpr RowOrder kSouthFirst = RowOrder::kSouthFirst;
constexpr RowOrder kNorthFirst = RowOrder::kNorthFirst;

SearchRegion box(float minLat, float maxLat, float minLon, float maxLon) {
  return {.maxLat = maxLat, .minLat = minLat, .maxLon = maxLon, .minLon = minLon};
}

void expect_rows(float minLat, float maxLat, RowOrder order, std::int32_t FirstRow,
                 std::int32_t LastRow) {
  const RowRange rows = find_rows(box(minLat, maxLat, 0, 20), order);
  EXPECT_EQ(rows.FirstRow, FirstRow) << minLat << ".." << maxLat;
  EXPECT_EQ(rows.LastRow, LastRow) << minLat << ".." << maxLat;
}

GridRanges ranges_of(float minLon, float maxLon, const GridRanges& previous = {}) {
  return find_ranges(box(-10, 10, minLon, maxLon), kSouthFirst, previous);
}

void expect_columns(const GridRanges& ranges, std::int32_t FirstCol,
                    std::int32_t LastCol, std::int32_t CellCount) {
  EXPECT_FALSE(ranges.CrossesDateLine);
  EXPECT_EQ(ranges.FirstCol, FirstCol);
  EXPECT_EQ(ranges.LastCol, LastCol);
  EXPECT_EQ(ranges.EastFirstCol, 0);
  EXPECT_EQ(ranges.EastLastCol, 0);
  EXPECT_EQ(ranges.ColCount(), LastCol - FirstCol + 1);
  EXPECT_EQ(ranges.CellCount(), CellCount);
}

void expect_two_ranges(const GridRanges& ranges, std::int32_t LastCol,
                       std::int32_t EastFirstCol, std::int32_t CellCount) {
  EXPECT_TRUE(ranges.CrossesDateLine);
  EXPECT_EQ(ranges.FirstCol, 1);
  EXPECT_EQ(ranges.LastCol, LastCol);
  EXPECT_EQ(ranges.EastFirstCol, EastFirstCol);
  EXPECT_EQ(ranges.EastLastCol, 720);
  EXPECT_EQ(ranges.ColCount(), LastCol + 720 - EastFirstCol + 1);
  EXPECT_EQ(ranges.CellCount(), CellCount);
}

TEST(CellCentres, RunFromWestToEastAndInFileOrder) {
  EXPECT_EQ(CellLon[1], -179.75F);
  EXPECT_EQ(CellLon[361], 0.25F);
  EXPECT_EQ(CellLon[720], 179.75F);
  EXPECT_EQ(CellLat(kSouthFirst)[1], -89.75F);
  EXPECT_EQ(CellLat(kSouthFirst)[360], 89.75F);
  EXPECT_EQ(CellLat(kNorthFirst)[1], 89.75F);
  EXPECT_EQ(CellLat(kNorthFirst)[160], 10.25F);
  EXPECT_EQ(CellLat(kNorthFirst)[201], -10.25F);
}

TEST(CellCentres, AreWhatRepeatedAdditionGives) {
  float longitude = -179.75F;
  for (std::int32_t column = 1; column <= 720; ++column, longitude += 0.5F) {
    ASSERT_EQ(CellLon[column], longitude);
  }
  float latitude = -89.75F;
  for (std::int32_t row = 1; row <= 360; ++row, latitude += 0.5F) {
    ASSERT_EQ(CellLat(kSouthFirst)[row], latitude);
    ASSERT_EQ(CellLat(kNorthFirst)[row], -latitude);
  }
}

TEST(FindRows, BoundsOnCellEdgesSelectTheCellsInside) {
  expect_rows(-10, 10, kSouthFirst, 161, 200);
  expect_rows(50, 60, kSouthFirst, 281, 300);
  expect_rows(51, 52, kSouthFirst, 283, 284);
}

// A minimum exactly on a centre excludes that row, a maximum includes it.
TEST(FindRows, MinimumOnACentreLeavesThatRowOut) {
  expect_rows(10.25F, 10.25F, kSouthFirst, 202, 201);
  expect_rows(10, 10.25F, kSouthFirst, 201, 201);
  expect_rows(10.25F, 10.5F, kSouthFirst, 202, 201);
}

TEST(FindRows, BoxesBetweenTwoCentresAreEmpty) {
  expect_rows(10, 10, kSouthFirst, 201, 200);
  expect_rows(51.1F, 51.2F, kSouthFirst, 283, 282);
  expect_rows(51.2F, 51.3F, kSouthFirst, 283, 283);
}

TEST(FindRows, PolesAreCorrected) {
  expect_rows(-90, 90, kSouthFirst, 1, 360);
  expect_rows(-89.75F, 89.75F, kSouthFirst, 1, 360);
  expect_rows(89.75F, 89.75F, kSouthFirst, 360, 360);
  expect_rows(-89.75F, -89.75F, kSouthFirst, 1, 1);
  expect_rows(89.5F, 90, kSouthFirst, 360, 360);
}

// Kept on purpose: such a bound gives row 0.
TEST(FindRows, BoundsBeyondTheLastCentreMatchNoRow) {
  expect_rows(-90, -90, kSouthFirst, 1, 0);
  expect_rows(90, 90, kSouthFirst, 0, 360);
  expect_rows(89.8F, 90, kSouthFirst, 0, 360);
}

TEST(FindRows, NorthFirstSelectsOneMoreRowAtEachEnd) {
  expect_rows(-10, 10, kNorthFirst, 160, 201);
  expect_rows(10, 20, kNorthFirst, 140, 161);
  expect_rows(10.25F, 10.25F, kNorthFirst, 159, 160);
  expect_rows(9.75F, 10.25F, kNorthFirst, 159, 161);
  expect_rows(10.1F, 10.1F, kNorthFirst, 160, 161);
  expect_rows(50, 60, kNorthFirst, 60, 81);
  expect_rows(-89.5F, 89.5F, kNorthFirst, 1, 360);
}

// Kept on purpose: the south pole sets FirstRow, the north pole LastRow.
TEST(FindRows, NorthFirstPolesCorrectTheOtherEnd) {
  expect_rows(-90, 90, kNorthFirst, 360, 1);
  expect_rows(0, 90, kNorthFirst, 0, 1);
  expect_rows(0, 89.75F, kNorthFirst, 0, 1);
  expect_rows(-90, 0, kNorthFirst, 360, 0);
  expect_rows(-89.75F, 0, kNorthFirst, 360, 360);
}

TEST(FindRanges, CountsCanBeNegative) {
  const GridRanges ranges = find_ranges(box(-90, 90, -180, 180), kNorthFirst, {});
  EXPECT_EQ(ranges.RowCount(), -358);
  EXPECT_EQ(ranges.CellCount(), -257760);
}

TEST(FindRanges, OrdinaryBoxesAreOneRangeOfColumns) {
  expect_columns(ranges_of(0, 20), 361, 400, 1600);
  expect_columns(ranges_of(-0.5F, 0.5F), 360, 361, 80);
  expect_columns(ranges_of(0.25F, 20.25F), 362, 401, 1600);
  expect_columns(ranges_of(20, 20), 401, 400, 0);
  expect_columns(ranges_of(0.1F, 0.2F), 361, 360, 0);
  expect_columns(ranges_of(-180, 180), 1, 720, 28800);
  expect_columns(ranges_of(-179.75F, 179.75F), 1, 720, 28800);
  expect_columns(ranges_of(179.75F, 179.75F), 720, 720, 40);
  expect_columns(ranges_of(-179.75F, -179.75F), 1, 1, 40);
  expect_columns(ranges_of(179.5F, 180), 720, 720, 40);
  expect_columns(ranges_of(-180, -179.5F), 1, 1, 40);
}

// Kept on purpose: such a bound gives column 0.
TEST(FindRanges, BoundsBeyondTheLastColumnMatchNone) {
  expect_columns(ranges_of(-180, -180), 1, 0, 0);
  expect_columns(ranges_of(180, 180), 0, 720, 28840);
  expect_columns(ranges_of(179.8F, 180), 0, 720, 28840);
}

TEST(FindRanges, BoxesAcrossTheMeridianHaveTwoRanges) {
  expect_two_ranges(ranges_of(170, -170), 20, 701, 1600);
  expect_two_ranges(ranges_of(179.75F, -179.75F), 1, 720, 80);
  expect_two_ranges(ranges_of(0.5F, 0), 360, 362, 28760);
  expect_two_ranges(ranges_of(0.5F, 0.25F), 361, 362, 28800);
}

// Kept on purpose: two ranges are not corrected at their ends.
TEST(FindRanges, TwoRangesAreNotCorrectedAtTheirEnds) {
  expect_two_ranges(ranges_of(170, -180), 0, 701, 800);
  expect_two_ranges(ranges_of(180, -170), 20, 0, 29640);
}

TEST(FindRanges, MinimumLongitudeOfTheDroughtIndexCanBeAnything) {
  const GridRanges ranges = find_ranges(box(50, 60, 500, 10), kNorthFirst, {});
  expect_two_ranges(ranges, 380, 0, 24222);
}

// Kept on purpose: the flag is never cleared.
TEST(FindRanges, OnceAcrossTheMeridianLaterBoxesStayInTwoRanges) {
  const GridRanges across = ranges_of(170, -170);
  expect_two_ranges(ranges_of(0, 20, across), 400, 361, 30400);
  expect_two_ranges(ranges_of(170, -180, across), 20, 701, 1600);
  expect_two_ranges(ranges_of(-180, 180, across), 20, 0, 29640);
  expect_two_ranges(ranges_of(-179.5F, 179.5F, across), 719, 2, 57520);
}

// Kept on purpose: a bound that matches no column keeps the previous one.
TEST(FindRanges, BoundsThatMatchNoColumnLeaveThePreviousOnes) {
  const GridRanges first = ranges_of(0, 20);
  expect_columns(ranges_of(180, 180, first), 361, 720, 14400);
  expect_columns(ranges_of(-180, -180, first), 1, 400, 16000);
  expect_two_ranges(ranges_of(170, -180, first), 400, 701, 16800);
}

// The rule in words, row by row: a row is inside if its centre is above the minimum and
// not above the maximum; a minimum on an outermost centre includes its row.
bool plainly_inside(const SearchRegion& region, std::int32_t row) {
  const float centre = -89.75F + 0.5F * static_cast<float>(row - 1);
  const bool at_an_end = region.minLat <= -89.75F || region.minLat == 89.75F;
  const bool above = centre > region.minLat || (at_an_end && centre >= region.minLat);
  return above && centre <= region.maxLat;
}

TEST(FindRows, AgreesWithAPlainDefinitionForAllBoundsInEighths) {
  for (int low = -720; low <= 718; low += 1) {
    const float minLat = static_cast<float>(low) / 8.0F;
    for (int high = low; high <= 720; high += 7) {
      const SearchRegion region = box(minLat, static_cast<float>(high) / 8.0F, 0, 20);
      const RowRange rows = find_rows(region, kSouthFirst);
      std::int32_t count = 0;
      for (std::int32_t row = 1; row <= 360; ++row) {
        const bool inside = rows.FirstRow <= row && row <= rows.LastRow;
        ASSERT_EQ(inside, plainly_inside(region, row))
            << row << " " << ::testing::PrintToString(region);
        count += inside ? 1 : 0;
      }
      ASSERT_EQ(count, rows.LastRow - rows.FirstRow + 1);
    }
  }
}

}  // namespace
}  // namespace veldmark
