#include "extract/block_reader.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include "extract/parallel_parts.h"
#include "grid/grid_layout.h"
#include "grid_input.h"
#include "support/grid_text.h"
#include "support/temporary_folder.h"
#include "util/failure.h"

namespace veldmark::extract {
namespace {

// The calling thread reads the first part, which fails in February 1901.
TEST(BlockReader, AFaultStopsTheLaterParts) {
  const veldmark::testing::TemporaryFolder folder;
  veldmark::testing::GridText grid(1902, 1, kGridRows, -999);
  grid.set_field(1901, 2, 1, 1, "  1.5");
  const std::string text = grid.text();
  if (parts_for(text.size()) == 1) {
    GTEST_SKIP() << "there is one processor, so there are no later parts";
  }
  const InputFile input = write_grid_input(text, 1902);
  std::vector<Cell> cells;
  for (std::int32_t row = 1; row <= kGridRows; ++row) {
    cells.push_back({.GridY = row, .GridX = 1});
  }

  std::int64_t later_parts = 0;  // bytes
  const Progress progress = [&, caller = std::this_thread::get_id()](auto bytes) {
    if (std::this_thread::get_id() != caller) {
      later_parts += bytes;
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
  };
  EXPECT_THROW(read_cells(input, CellSet(cells), input.years, progress), Failure);
  // Read whole, the later parts would be at least half of the file.
  EXPECT_LT(later_parts, input.size / 2);
}

}  // namespace
}  // namespace veldmark::extract
