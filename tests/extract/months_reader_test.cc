#include "extract/months_reader.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "grid_input.h"
#include "support/grid_text.h"
#include "support/temporary_folder.h"

namespace veldmark::extract {
namespace {

// Cells whose data begin later are left to read().
TEST(MonthsReader, FindsTheCellsWithDataInTheFirstMonth) {
  const veldmark::testing::TemporaryFolder folder;
  veldmark::testing::GridText grid(1901, 1, 360, -999);
  grid.set_value(1901, 1, 301, 81, 7);
  grid.set_value(1901, 1, 301, 82, 7);
  grid.set_value(1901, 5, 301, 83, 5);
  const InputFile input = write_grid_input(grid.text(), 1901);
  const CellSet cells({{301, 81}, {301, 82}, {301, 83}});
  const Progress no_progress;
  const BlockLayout layout =
      MonthsReader(input, cells, input.years, no_progress).find_cells();
  EXPECT_EQ(layout.rows, std::vector<std::int32_t>{301});
  EXPECT_EQ(layout.begin, (std::vector<std::size_t>{0, 2}));
  EXPECT_EQ(layout.columns, (std::vector<std::int32_t>{81, 82}));
}

}  // namespace
}  // namespace veldmark::extract
