// Compares the rows and columns for all bounds in eighths of a degree with loops over
// all pairs of neighbouring centres, and the lattice with plain counting.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "selection/grid_geometry.h"
#include "selection/lattice.h"
#include "support/sweep.h"

namespace veldmark {
namespace {

using testing::kSweepStep;
using testing::record_cases;

// All in eighths of a degree, so that nothing is rounded. Centres are half a degree
// apart; the outermost ones are a quarter degree from the edge of the grid.
constexpr int kLatitudeEnd = 90 * 8;
constexpr int kLongitudeEnd = 180 * 8;
constexpr int kCell = 4;

float degrees(int eighths) { return static_cast<float>(eighths) / 8.0F; }

// A region between two latitudes; longitudes don't matter for rows.
SearchRegion band(int low, int high) {
  return {.maxLat = degrees(high), .minLat = degrees(low), .maxLon = 0, .minLon = 0};
}

// One axis of the grid, which ends `end` eighths on either side of zero.
struct Axis {
  int end;

  [[nodiscard]] int count() const { return 2 * end / kCell; }
  [[nodiscard]] int first() const { return -end + kCell / 2; }
  [[nodiscard]] int last() const { return end - kCell / 2; }

  // Returns the number of centres not above the bound.
  [[nodiscard]] int at_or_below(int bound) const {
    int found = 0;
    for (int centre = first(); centre <= last(); centre += kCell) {
      found += centre <= bound ? 1 : 0;
    }
    return found;
  }
};

// What a bound finds as a minimum and as a maximum: the upper and the lower centre of
// the last pair that it lies on or between; nothing if it is outside the outermost
// centres.
struct Found {
  std::optional<int> as_minimum;
  std::optional<int> as_maximum;
};

// Returns that for every bound from -end to end.
std::vector<Found> plainly_found(const Axis& axis) {
  std::vector<Found> all;
  for (int bound = -axis.end; bound <= axis.end; ++bound) {
    Found found;
    for (int pair = 1; pair < axis.count(); ++pair) {
      const int low = axis.first() + (pair - 1) * kCell;
      if (low <= bound && bound <= low + kCell) {
        found = {.as_minimum = pair + 1, .as_maximum = pair};
      }
    }
    all.push_back(found);
  }
  return all;
}

TEST(GridRangesSweep, RowsOfSouthFirstFiles) {
  const Axis axis{kLatitudeEnd};
  const std::vector<Found> found = plainly_found(axis);
  std::size_t cases = 0;
  for (int low = -axis.end; low <= axis.end; ++low) {
    const Found& minimum = found[static_cast<std::size_t>(low + axis.end)];
    const int FirstRow = low <= axis.first() ? 1 : minimum.as_minimum.value_or(0);
    for (int high = low; high <= axis.end; ++high, ++cases) {
      const Found& maximum = found[static_cast<std::size_t>(high + axis.end)];
      const int LastRow = high >= axis.last() ? 360 : maximum.as_maximum.value_or(0);
      const RowRange rows = find_rows(band(low, high), RowOrder::kSouthFirst);
      ASSERT_EQ(rows.FirstRow, FirstRow) << degrees(low) << " " << degrees(high);
      ASSERT_EQ(rows.LastRow, LastRow) << degrees(low) << " " << degrees(high);
    }
  }
  record_cases(cases, 1'038'961);
}

// Rows are counted from the north: the number of rows north of a bound is the number of
// centres above it.
TEST(GridRangesSweep, RowsOfNorthFirstFiles) {
  const Axis axis{kLatitudeEnd};
  std::vector<int> above;
  for (int bound = -axis.end; bound <= axis.end; ++bound) {
    above.push_back(axis.count() - axis.at_or_below(bound));
  }
  const auto between_rows = [](int rows_above) {
    return 1 <= rows_above && rows_above < 360;
  };
  std::size_t cases = 0;
  for (int low = -axis.end; low <= axis.end; ++low) {
    const int above_low = above[static_cast<std::size_t>(low + axis.end)];
    for (int high = low; high <= axis.end; ++high, ++cases) {
      const int above_high = above[static_cast<std::size_t>(high + axis.end)];
      int FirstRow = between_rows(above_high) ? above_high : 0;
      int LastRow = between_rows(above_low) ? above_low + 1 : 0;
      // Kept on purpose: each pole corrects the other end.
      FirstRow = low <= axis.first() ? 360 : FirstRow;
      LastRow = high >= axis.last() ? 1 : LastRow;
      const RowRange rows = find_rows(band(low, high), RowOrder::kNorthFirst);
      ASSERT_EQ(rows.FirstRow, FirstRow) << degrees(low) << " " << degrees(high);
      ASSERT_EQ(rows.LastRow, LastRow) << degrees(low) << " " << degrees(high);
    }
  }
  record_cases(cases, 1'038'961);
}

GridRanges plain_columns(const Axis& axis, const std::vector<Found>& found, int low,
                         int high, const GridRanges& previous) {
  const Found& minimum = found[static_cast<std::size_t>(low + axis.end)];
  const Found& maximum = found[static_cast<std::size_t>(high + axis.end)];
  GridRanges ranges;
  ranges.CrossesDateLine = previous.CrossesDateLine || low > high;
  ranges.LastCol = maximum.as_maximum.value_or(previous.LastCol);
  if (ranges.CrossesDateLine) {
    ranges.FirstCol = 1;
    ranges.EastFirstCol = minimum.as_minimum.value_or(0);
    ranges.EastLastCol = 720;
    return ranges;
  }
  ranges.FirstCol = minimum.as_minimum.value_or(previous.FirstCol);
  ranges.FirstCol = low <= axis.first() ? 1 : ranges.FirstCol;
  ranges.LastCol = high >= axis.last() ? 720 : ranges.LastCol;
  return ranges;
}

// Previous searches: none, one with other columns, and one across the meridian.
const std::vector<GridRanges> kPrevious{
    {}, {.FirstCol = 77, .LastCol = 88}, {.LastCol = 20, .CrossesDateLine = true}};

// Each part covers the pairs whose west bound leaves the remainder `part`, because a
// single test would take too long.
class GridColumnsSweep : public ::testing::TestWithParam<int> {};

constexpr int kParts = 16;

TEST_P(GridColumnsSweep, AllPairsOfLongitudes) {
  const Axis axis{kLongitudeEnd};
  const std::vector<Found> found = plainly_found(axis);
  std::size_t cases = 0;
  for (int low = -axis.end + GetParam(); low <= axis.end; low += kParts) {
    // With a step above 1 the start changes from line to line.
    const int offset = static_cast<int>(cases % kSweepStep);
    for (int high = -axis.end + offset; high <= axis.end; high += kSweepStep, ++cases) {
      const GridRanges& previous = kPrevious[cases % kPrevious.size()];
      const GridRanges expected = plain_columns(axis, found, low, high, previous);
      const GridRanges got = find_ranges(
          {.maxLat = 1, .minLat = 0, .maxLon = degrees(high), .minLon = degrees(low)},
          RowOrder::kSouthFirst, previous);
      const bool same = got.FirstCol == expected.FirstCol &&
                        got.LastCol == expected.LastCol &&
                        got.EastFirstCol == expected.EastFirstCol &&
                        got.EastLastCol == expected.EastLastCol &&
                        got.CrossesDateLine == expected.CrossesDateLine;
      ASSERT_TRUE(same) << degrees(low) << " " << degrees(high) << ", columns "
                        << got.FirstCol << ".." << got.LastCol << " and "
                        << got.EastFirstCol << ".." << got.EastLastCol;
    }
  }
  const std::size_t all = GetParam() == 0 ? 521'461 : 518'580;
  const std::size_t some = GetParam() == 0 ? 32'581 : 32'401;
  record_cases(cases, kSweepStep == 1 ? all : some);
}

INSTANTIATE_TEST_SUITE_P(Part, GridColumnsSweep, ::testing::Range(0, kParts));

// Skips n - 1 numbers after each one that is taken.
std::vector<std::int32_t> plain_stride(std::int32_t first, std::int32_t last, int n) {
  std::vector<std::int32_t> taken;
  int to_pass = 0;
  for (std::int32_t place = first; place <= last; ++place) {
    if (to_pass == 0) {
      to_pass = n;
      if (place >= 1) {
        taken.push_back(place);
      }
    }
    --to_pass;
  }
  return taken;
}

TEST(GridRangesSweep, MakeLattice) {
  std::size_t cases = 0;
  for (std::int32_t first = 0; first <= 9; ++first) {
    for (std::int32_t last = 0; last <= 30; ++last) {
      for (std::int32_t east = 715; east <= 721; ++east) {
        for (int n = 1; n <= 33; ++n, ++cases) {
          const GridRanges ranges{.FirstRow = last,
                                  .LastRow = 3 * first,
                                  .FirstCol = first,
                                  .LastCol = last,
                                  .EastFirstCol = east,
                                  .EastLastCol = 720,
                                  .CrossesDateLine = east < 721};
          const Lattice lattice = make_lattice(ranges, n);
          std::vector<std::int32_t> columns = plain_stride(first, last, n);
          for (const std::int32_t column : plain_stride(east, 720, n)) {
            columns.push_back(column);
          }
          ASSERT_EQ(lattice.rows, plain_stride(last, 3 * first, n)) << n;
          ASSERT_EQ(lattice.columns, columns) << first << " " << last << " " << n;
        }
      }
    }
  }
  record_cases(cases, 71'610);
}

TEST(GridRangesSweep, EstimatesOfNonEmptyBoxes) {
  std::size_t cases = 0;
  for (std::int32_t rows = 1; rows <= 60; ++rows) {
    for (std::int32_t columns = 1; columns <= 60; ++columns) {
      for (int n = 1; n <= 62; ++n, ++cases) {
        std::int64_t kept_rows = 0;
        for (std::int32_t row = 1; row <= rows; row += n) {
          ++kept_rows;
        }
        std::int64_t kept_columns = 0;
        for (std::int32_t column = 1; column <= columns; column += n) {
          ++kept_columns;
        }
        ASSERT_EQ(estimate_cells(rows, columns, n), kept_rows * kept_columns)
            << rows << " " << columns << " " << n;
      }
    }
  }
  record_cases(cases, 223'200);
}

}  // namespace
}  // namespace veldmark
