#include "extract/cell_set.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <span>
#include <vector>

namespace veldmark::extract {
namespace {

using Numbers = std::vector<std::int32_t>;

Numbers numbers(std::span<const std::int32_t> span) {
  return {span.begin(), span.end()};
}

TEST(CellSet, HoldsEachCellOnceInOrder) {
  const CellSet cells({{2, 7}, {1, 9}, {2, 7}, {2, 3}});
  EXPECT_EQ(cells.size(), 3U);
  EXPECT_EQ(numbers(cells.rows()), (Numbers{1, 2}));
  EXPECT_EQ(numbers(cells.columns(0)), Numbers{9});
  EXPECT_EQ(numbers(cells.columns(1)), (Numbers{3, 7}));
}

}  // namespace
}  // namespace veldmark::extract
