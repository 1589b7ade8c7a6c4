#include "catalogue/transpose.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <numeric>
#include <vector>

namespace veldmark {
namespace {

TEST(TransposeSquare, TransposesAndChangesNothingElse) {
  constexpr std::size_t kFromStep = 11;
  constexpr std::size_t kToStep = 9;
  std::vector<std::int16_t> from(kFromStep * kSquareSize);
  for (std::size_t i = 0; i < from.size(); ++i) {
    from[i] = static_cast<std::int16_t>(i * 7 - 300);
  }
  std::vector<std::int16_t> to(kToStep * kSquareSize, -1);
  transpose_square(from.data(), kFromStep, to.data(), kToStep);
  for (std::size_t j = 0; j < kSquareSize; ++j) {
    for (std::size_t i = 0; i < kToStep; ++i) {
      const std::int16_t expected = i < kSquareSize ? from[i * kFromStep + j] : -1;
      ASSERT_EQ(to[j * kToStep + i], expected) << i << ", " << j;
    }
  }
}

TEST(Transpose, TurnsBlocksOfAllShapes) {
  for (const std::size_t months : {1, 7, 8, 12, 24}) {
    for (const std::size_t cells : {0, 1, 7, 8, 9, 16, 21}) {
      std::vector<std::int16_t> from(months * cells);
      std::iota(from.begin(), from.end(), std::int16_t{1});
      std::vector<std::int16_t> to(from.size());
      transpose(from.data(), months, cells, to.data());
      for (std::size_t month = 0; month < months; ++month) {
        for (std::size_t cell = 0; cell < cells; ++cell) {
          ASSERT_EQ(to[cell * months + month], from[month * cells + cell]);
        }
      }
    }
  }
}

}  // namespace
}  // namespace veldmark
