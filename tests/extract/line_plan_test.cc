// The fast path takes regular lines and refuses all others.

#include "extract/line_plan.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <numeric>
#include <string>
#include <vector>

#include "grid/grid_layout.h"

namespace veldmark::extract {
namespace {

const std::string kMissing = missing_line(-999);

void put(std::string& line, std::int32_t column, const std::string& field) {
  line.replace(static_cast<std::size_t>(column - 1) * kFieldWidth, kFieldWidth, field);
}

// One more character after the line must be readable.
bool read(const std::string& line, const RowPlan& plan,
          std::vector<std::int16_t>& values) {
  const std::string with_end = line + "\n";
  return try_fast_read(std::string_view(with_end).substr(0, kLineLength), plan,
                       kMissing, values.data());
}

std::vector<std::int32_t> columns(std::int32_t first, std::int32_t last) {
  std::vector<std::int32_t> all(static_cast<std::size_t>(last - first + 1));
  std::iota(all.begin(), all.end(), first);
  return all;
}

// Five digits that may not fit into 16 bits are found in every column.
TEST(TryFastRead, NoticesLargeNumbersInEveryColumn) {
  for (const std::int32_t first : {1, 2, 700, 720}) {
    const std::vector<std::int32_t> wanted = columns(first, kGridColumns);
    const RowPlan plan = plan_cells(wanted, wanted, {});
    std::vector<std::int16_t> values(wanted.size());
    for (const std::int32_t column : wanted) {
      std::string line = kMissing;
      put(line, column, "29999");
      ASSERT_TRUE(read(line, plan, values)) << column;
      ASSERT_EQ(values[static_cast<std::size_t>(column - first)], 29999) << column;
      for (const char* large : {"32768", "99999", "30000", "64537"}) {
        put(line, column, large);
        ASSERT_FALSE(read(line, plan, values)) << large << " in " << column;
      }
      put(line, column, " 9876");
      ASSERT_TRUE(read(line, plan, values)) << column;
    }
  }
}

TEST(TryFastRead, LooksAtNothingElse) {
  const std::vector<std::int32_t> wanted = columns(100, 120);
  const RowPlan plan = plan_cells(wanted, wanted, {});
  std::vector<std::int16_t> values(wanted.size());
  std::string line = kMissing;
  put(line, 99, "99999");
  put(line, 121, "  x!?");
  EXPECT_TRUE(read(line, plan, values));
}

TEST(TryFastRead, NoticesDataWhereNoneWasBefore) {
  const std::vector<std::int32_t> wanted = columns(100, 120);
  const std::vector<std::int32_t> with_data = columns(100, 110);
  const RowPlan plan = plan_cells(wanted, with_data, {});
  std::vector<std::int16_t> values(with_data.size());
  for (const std::int32_t column : wanted) {
    std::string line = kMissing;
    put(line, column, "   12");
    EXPECT_EQ(read(line, plan, values), column <= 110) << column;
  }
}

TEST(TryFastRead, NoticesWhatIsNoIntegerAndLineEndsAnywhere) {
  const std::vector<std::int32_t> wanted = columns(100, 120);
  const RowPlan plan = plan_cells(wanted, columns(100, 110), {});
  std::vector<std::int16_t> values(wanted.size());
  std::string line = kMissing;
  put(line, 110, "  1.5");
  EXPECT_FALSE(read(line, plan, values));
  for (std::size_t place = 0; place < kLineLength; ++place) {
    line = kMissing;
    line[place] = '\n';
    ASSERT_FALSE(read(line, plan, values)) << place;
  }
}

}  // namespace
}  // namespace veldmark::extract
