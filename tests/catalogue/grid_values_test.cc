#include "catalogue/grid_values.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <utility>
#include <vector>

namespace veldmark {
namespace {

using Columns = std::vector<std::int32_t>;

constexpr std::int32_t kMissing = -999;

template <typename Values>
Columns columns_of(const Values& values, std::int32_t row) {
  const auto columns = values.data_columns(row);
  return {columns.begin(), columns.end()};
}

RowValues all_missing() {
  RowValues row{};
  row.fill(kMissing);
  return row;
}

TEST(GridValues, HasTheRequestedCellsWhoseFirstJanuaryHasData) {
  const GridRanges ranges{.FirstRow = 5, .LastRow = 6, .FirstCol = 10, .LastCol = 20};
  GridValuesBuilder values(ranges, 1, kMissing);
  RowValues january = all_missing();
  january[9] = january[10] = january[15] = january[20] = january[21] = 7;
  values.add_row(january);
  values.add_row(all_missing());
  EXPECT_EQ(columns_of(values, 5), (Columns{10, 15, 20}));
  EXPECT_EQ(columns_of(values, 6), Columns{});
  EXPECT_EQ(columns_of(values, 4), Columns{});
  EXPECT_EQ(columns_of(values, 7), Columns{});
}

TEST(GridValues, HasColumnsOfTwoRangesOnceAndNoneOutsideTheGrid) {
  const GridRanges ranges{.FirstRow = 0,
                          .LastRow = 1,
                          .FirstCol = 1,
                          .LastCol = 3,
                          .EastFirstCol = 0,
                          .EastLastCol = 720,
                          .CrossesDateLine = true};
  GridValuesBuilder values(ranges, 1, kMissing);
  RowValues january = all_missing();
  january[0] = january[2] = january[720] = 7;
  values.add_row(january);
  EXPECT_EQ(columns_of(values, 0), Columns{});
  EXPECT_EQ(columns_of(values, 1), (Columns{2, 720}));
}

TEST(TransposeRow, PutsTheMonthsOfEachCellInOrder) {
  // Counts around the size of the squares in which a row is transposed.
  for (const std::int32_t cells : {1, 7, 8, 9, 17}) {
    const GridRanges ranges{
        .FirstRow = 2, .LastRow = 3, .FirstCol = 1, .LastCol = cells};
    GridValuesBuilder values(ranges, 2, kMissing);
    const auto value_of = [](std::size_t month, std::int32_t row, std::size_t column) {
      return static_cast<std::int16_t>(month * 1000 +
                                       static_cast<std::size_t>(row) * 100 + column);
    };
    const auto row_of_month = [&](std::size_t month, std::int32_t row) {
      RowValues row_values{};
      for (std::size_t column = 1; column <= 720; ++column) {
        row_values[column] = value_of(month, row, column);
      }
      return row_values;
    };
    values.add_row(row_of_month(0, 2));
    values.add_row(row_of_month(0, 3));
    values.allocate();
    for (std::size_t month = 1; month < 24; ++month) {
      values.store_row(month, 2, row_of_month(month, 2));
      values.store_row(month, 3, row_of_month(month, 3));
    }
    std::vector<std::int16_t> series;
    transpose_row(std::move(values).finish(), 3, series);
    ASSERT_EQ(series.size(), static_cast<std::size_t>(cells) * 24);
    for (std::size_t i = 0; i < series.size(); ++i) {
      ASSERT_EQ(series[i], value_of(i % 24, 3, i / 24 + 1));
    }
  }
}

TEST(TransposeRow, IsEmptyForARowOutsideTheRanges) {
  const GridRanges ranges{.FirstRow = 2, .LastRow = 2, .FirstCol = 1, .LastCol = 3};
  GridValuesBuilder values(ranges, 1, kMissing);
  values.add_row(RowValues{});
  values.allocate();
  const GridValues finished = std::move(values).finish();
  for (const std::int32_t row : {0, 1, 3}) {
    std::vector<std::int16_t> series{1, 2, 3};
    transpose_row(finished, row, series);
    EXPECT_TRUE(series.empty()) << row;
  }
}

}  // namespace
}  // namespace veldmark
