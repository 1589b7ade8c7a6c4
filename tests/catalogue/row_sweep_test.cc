// Compares reading lines by row format and by plan, and transposing rows into series,
// with plain definitions.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "catalogue/grid_values.h"
#include "catalogue/row_format.h"
#include "catalogue/row_plan.h"
#include "catalogue/transpose.h"
#include "selection/grid_geometry.h"
#include "support/plain/fields.h"
#include "support/plain/rows.h"
#include "support/sweep.h"

namespace veldmark {
namespace {

using testing::record_cases;

// Returns random ranges, most of them narrow, some at the edges of the grid. Some
// inherit from a previous search.
GridRanges random_ranges(std::mt19937& random) {
  GridRanges ranges;
  const std::size_t searches = 1 + random() % 2;
  for (std::size_t search = 0; search < searches; ++search) {
    const auto longitude = [&] {
      return random() % 8 == 0 ? (random() % 2 == 0 ? -180.0F : 180.0F)
                               : static_cast<float>(random() % 1441) / 4.0F - 180.0F;
    };
    const float minLon = longitude();
    const float width = static_cast<float>(random() % 80) / 4.0F;
    const float maxLon =
        random() % 3 == 0 ? longitude() : std::min(minLon + width, 180.0F);
    ranges = find_ranges({.maxLat = 1, .minLat = 0, .maxLon = maxLon, .minLon = minLon},
                         RowOrder::kSouthFirst, ranges);
  }
  return ranges;
}

std::string random_field(std::mt19937& random) {
  constexpr std::string_view kMissing = " -999";
  const std::size_t kind = random() % 40;
  if (kind < 20) {
    return std::string(kMissing);
  }
  if (kind < 38) {
    std::string digits = std::to_string(random() % 100000);
    digits.insert(0, 5 - digits.size(), ' ');
    return digits;
  }
  std::string odd;
  while (odd.size() < 5) {
    odd += " \t+-0123456789"[random() % 14];
  }
  return odd;
}

// Some lines have a bad character, are cut short or are too long.
std::string random_line(std::mt19937& random) {
  std::string line;
  for (int field = 0; field < 720; ++field) {
    const std::string text = random_field(random);
    line += plain::integer(text) ? text : "    7";
  }
  if (random() % 4 == 0) {
    line[random() % line.size()] = "x-+.\r"[random() % 5];
  }
  if (random() % 8 == 0) {
    line.resize(random() % 3600);
  }
  return line;
}

TEST(RowSweep, ReadRowOnRandomLines) {
  std::mt19937 random(71);
  std::size_t readable = 0;
  constexpr std::size_t kCases = 8000;
  for (std::size_t i = 0; i < kCases; ++i) {
    const GridRanges ranges = random_ranges(random);
    std::string line = random_line(random);
    if (random() % 8 ==
        0) {  // ends just behind the first range, or just before its end
      const auto end = static_cast<std::size_t>(5 * std::max(ranges.LastCol, 1));
      line.resize(std::min(line.size(), end - random() % 3));
    }
    const plain::Row expected = plain::read(line, ranges);
    RowValues values;
    values.fill(-12345);
    ASSERT_EQ(read_row(line, field_groups(ranges), values), !expected.bad_field) << i;
    if (expected.bad_field) {
      continue;
    }
    ++readable;
    for (std::int32_t column = 1; column <= 720; ++column) {
      ASSERT_EQ(values[static_cast<std::size_t>(column)],
                expected.value(column).value_or(-12345))
          << i << ", column " << column;
    }
  }
  EXPECT_GT(readable, kCases / 4);
  EXPECT_LT(readable, kCases);
  record_cases(kCases, 8'000);
}

// Returns some of the columns of the box, as those of the cells with data.
std::vector<std::int32_t> random_data_columns(std::mt19937& random,
                                              const plain::Row& row) {
  std::vector<std::int32_t> columns;
  const std::size_t share = 1 + random() % 6;
  for (std::int32_t column = 1; column <= 720; ++column) {
    if (row.value(column) && random() % share == 0) {
      columns.push_back(column);
    }
  }
  return columns;
}

TEST(RowSweep, ReadByPlanOnRandomLines) {
  std::mt19937 random(72);
  std::string missing_line;
  for (int field = 0; field < 720; ++field) {
    missing_line += " -999";
  }
  std::size_t readable = 0;
  constexpr std::size_t kCases = 8000;
  for (std::size_t i = 0; i < kCases; ++i) {
    const GridRanges ranges = random_ranges(random);
    std::string line = random_line(random);
    line.resize(3600, ' ');
    if (random() % 16 == 0) {
      line[random() % 3600] = '\n';
    }
    const plain::Row expected = plain::read(line, ranges);
    const bool has_no_newline = line.find('\n') == std::string::npos;
    const std::vector<std::int32_t> columns = random_data_columns(random, expected);
    std::vector<std::int16_t> cells(columns.size() + 1, -12345);
    const std::string with_end = line + "\n";
    const bool got = read_by_plan(std::string_view(with_end).substr(0, 3600),
                                  plan_row(field_groups(ranges), columns), missing_line,
                                  cells.data());
    ASSERT_EQ(got, has_no_newline && !expected.bad_field) << i;
    if (!got) {
      continue;
    }
    ++readable;
    for (std::size_t cell = 0; cell < columns.size(); ++cell) {
      ASSERT_EQ(cells[cell], expected.value(columns[cell]))
          << i << ", " << columns[cell];
    }
    ASSERT_EQ(cells.back(), -12345) << "one cell too many, " << i;
  }
  EXPECT_GT(readable, kCases / 4);
  record_cases(kCases, 8'000);
}

// All numbers of months and cells around the size of the transposed squares.
TEST(RowSweep, TransposeRowOfAllSizes) {
  std::mt19937 random(73);
  std::size_t cases = 0;
  for (std::int32_t cells = 0; cells <= 41; ++cells) {
    for (std::int32_t years = 1; years <= 9; ++years, ++cases) {
      const GridRanges ranges{
          .FirstRow = 5, .LastRow = 5, .FirstCol = 3, .LastCol = 700};
      GridValuesBuilder builder(ranges, years, -999);
      std::vector<RowValues> months(static_cast<std::size_t>(years) * 12);
      for (RowValues& month : months) {
        month.fill(-999);
        for (std::int32_t cell = 0; cell < cells; ++cell) {
          month[static_cast<std::size_t>(3 + 17 * cell)] =
              static_cast<std::int16_t>(random() % 60000 - 900);
        }
      }
      builder.add_row(months[0]);
      builder.allocate();
      for (std::size_t month = 1; month < months.size(); ++month) {
        builder.store_row(month, 5, months[month]);
      }
      std::vector<std::int16_t> series;
      const GridValues values = std::move(builder).finish();
      transpose_row(values, 5, series);
      const auto columns = values.data_columns(5);
      ASSERT_EQ(series.size(), columns.size() * months.size());
      for (std::size_t cell = 0; cell < columns.size(); ++cell) {
        for (std::size_t month = 0; month < months.size(); ++month) {
          ASSERT_EQ(series[cell * months.size() + month],
                    months[month][static_cast<std::size_t>(columns[cell])])
              << cells << " cells, " << years << " years";
        }
      }
    }
  }
  record_cases(cases, 378);
}

TEST(RowSweep, TransposeSquareWithAllSteps) {
  std::mt19937 random(74);
  std::size_t cases = 0;
  for (std::size_t from_step = kSquareSize; from_step <= 40; ++from_step) {
    for (std::size_t to_step = kSquareSize; to_step <= 40; ++to_step, ++cases) {
      std::vector<std::int16_t> from(from_step * kSquareSize);
      for (std::int16_t& value : from) {
        value = static_cast<std::int16_t>(random());
      }
      std::vector<std::int16_t> expected(to_step * kSquareSize, 77);
      std::vector<std::int16_t> to = expected;
      for (std::size_t i = 0; i < kSquareSize; ++i) {
        for (std::size_t j = 0; j < kSquareSize; ++j) {
          expected[j * to_step + i] = from[i * from_step + j];
        }
      }
      transpose_square(from.data(), from_step, to.data(), to_step);
      ASSERT_EQ(to, expected) << from_step << " to " << to_step;
    }
  }
  record_cases(cases, 1'089);
}

}  // namespace
}  // namespace veldmark
