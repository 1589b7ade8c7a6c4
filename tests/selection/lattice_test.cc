#include "selection/lattice.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "util/fixed_field.h"

namespace veldmark {
namespace {

using Places = std::vector<std::int32_t>;

void expect_estimate(std::int32_t RowCount, std::int32_t ColCount,
                     std::int32_t ThinningFactor, std::int64_t cells,
                     const std::string& percentage) {
  const std::int64_t EstimatedCells =
      estimate_cells(RowCount, ColCount, ThinningFactor);
  EXPECT_EQ(EstimatedCells, cells);
  EXPECT_EQ(fixed_real(percentage_of_cells(EstimatedCells, RowCount * ColCount), 7, 3),
            percentage)
      << RowCount << " x " << ColCount << ", factor " << ThinningFactor;
}

TEST(Estimate, CountsEveryNthRowAndColumn) {
  expect_estimate(40, 40, 1, 1600, "100.000");
  expect_estimate(40, 40, 2, 400, " 25.000");
  expect_estimate(40, 40, 3, 196, " 12.250");
  expect_estimate(40, 40, 7, 36, "  2.250");
  expect_estimate(3, 5, 2, 6, " 40.000");
  expect_estimate(3, 5, 3, 2, " 13.333");
  expect_estimate(7, 11, 3, 12, " 15.584");
  expect_estimate(7, 11, 2, 24, " 31.169");
  expect_estimate(1, 3, 2, 2, " 66.667");
  expect_estimate(360, 720, 7, 5356, "  2.066");
  expect_estimate(361, 721, 1, 260281, "100.000");
  expect_estimate(361, 721, 2, 65341, " 25.104");
}

TEST(Estimate, ShowsExactTiesRoundedHalfToEven) {
  expect_estimate(40, 40, 6, 49, "  3.062");
  expect_estimate(40, 40, 8, 25, "  1.562");
  expect_estimate(40, 40, 9, 25, "  1.562");
  expect_estimate(40, 40, 14, 9, "  0.562");
  for (const std::int32_t n : {40, 41, 100, 2147483647}) {
    expect_estimate(40, 40, n, 1, "  0.062");
  }
}

TEST(Estimate, OfAnEmptyBoxIsNanPercent) {
  expect_estimate(0, 40, 1, 0, "    NaN");
  expect_estimate(0, 40, 5, 0, "    NaN");
}

// Kept on purpose: the estimate is not clamped at 0.
TEST(Estimate, OfNegativeRowCountsIsNegative) {
  expect_estimate(-358, 720, 1, -257760, "100.000");
  expect_estimate(-358, 720, 2, -64080, " 24.860");
  expect_estimate(-358, 720, 7, -5150, "  1.998");
  expect_estimate(-358, 720, 400, 0, " -0.000");
}

GridRanges ranges_across(std::int32_t LastCol, std::int32_t EastFirstCol) {
  return {.FirstRow = 161,
          .LastRow = 200,
          .FirstCol = 1,
          .LastCol = LastCol,
          .EastFirstCol = EastFirstCol,
          .EastLastCol = 720,
          .CrossesDateLine = true};
}

TEST(MakeLattice, StridesRowsAndColumnsFromTheFirst) {
  const GridRanges ranges{.FirstRow = 3, .LastRow = 9, .FirstCol = 10, .LastCol = 14};
  EXPECT_EQ(make_lattice(ranges, 1).rows, (Places{3, 4, 5, 6, 7, 8, 9}));
  EXPECT_EQ(make_lattice(ranges, 3).rows, (Places{3, 6, 9}));
  EXPECT_EQ(make_lattice(ranges, 3).columns, (Places{10, 13}));
  EXPECT_EQ(make_lattice(ranges, 2147483647).rows, Places{3});
  EXPECT_EQ(make_lattice(ranges, 2147483647).columns, Places{10});
}

TEST(MakeLattice, StridesEachRangeSeparately) {
  const GridRanges ranges = ranges_across(20, 701);
  EXPECT_EQ(make_lattice(ranges, 6).columns,
            (Places{1, 7, 13, 19, 701, 707, 713, 719}));
  EXPECT_EQ(make_lattice(ranges, 6).rows, (Places{161, 167, 173, 179, 185, 191, 197}));
  EXPECT_EQ(make_lattice(ranges, 7).columns, (Places{1, 8, 15, 701, 708, 715}));
  EXPECT_EQ(make_lattice(ranges, 20).columns, (Places{1, 701}));
  EXPECT_EQ(make_lattice(ranges, 21).columns, (Places{1, 701}));
}

TEST(MakeLattice, CountsRowAndColumnZeroButOmitsThem) {
  GridRanges ranges = ranges_across(3, 0);
  ranges.FirstRow = 0;
  ranges.LastRow = 5;
  EXPECT_EQ(make_lattice(ranges, 2).rows, (Places{2, 4}));
  EXPECT_EQ(make_lattice(ranges, 300).columns, (Places{1, 300, 600}));
}

TEST(MakeLattice, RepeatsCommonColumnsOfOverlappingRanges) {
  EXPECT_EQ(make_lattice(ranges_across(400, 361), 120).columns,
            (Places{1, 121, 241, 361, 361, 481, 601}));
}

TEST(MakeLattice, IsEmptyForEmptyRanges) {
  const GridRanges ranges{.FirstRow = 202, .LastRow = 201, .FirstCol = 1, .LastCol = 0};
  EXPECT_TRUE(make_lattice(ranges, 1).rows.empty());
  EXPECT_TRUE(make_lattice(ranges, 1).columns.empty());
}

}  // namespace
}  // namespace veldmark
