#include "catalogue/transpose.h"

#include <array>
#include <cstring>

namespace veldmark {
namespace {

using Vector = std::int16_t __attribute__((vector_size(16)));
using Square = std::array<Vector, kSquareSize>;

// Return the low (high) halves of two vectors, interleaved value by value.
Vector low_halves(Vector a, Vector b) {
  return __builtin_shufflevector(a, b, 0, 8, 1, 9, 2, 10, 3, 11);
}
Vector high_halves(Vector a, Vector b) {
  return __builtin_shufflevector(a, b, 4, 12, 5, 13, 6, 14, 7, 15);
}

// Interleaves each vector of the first half with its partner in the second half. Doing
// that three times transposes the square.
Square interleaved(const Square& square) {
  Square result;
  for (std::size_t i = 0; i < kSquareSize / 2; ++i) {
    result[2 * i] = low_halves(square[i], square[i + kSquareSize / 2]);
    result[2 * i + 1] = high_halves(square[i], square[i + kSquareSize / 2]);
  }
  return result;
}

}  // namespace

void transpose_square(const std::int16_t* from, std::size_t from_step, std::int16_t* to,
                      std::size_t to_step) {
  Square square;
  for (std::size_t i = 0; i < kSquareSize; ++i) {
    std::memcpy(&square[i], from + i * from_step, sizeof(Vector));
  }
  square = interleaved(interleaved(interleaved(square)));
  for (std::size_t j = 0; j < kSquareSize; ++j) {
    std::memcpy(to + j * to_step, &square[j], sizeof(Vector));
  }
}

void transpose(const std::int16_t* from, std::size_t months, std::size_t cells,
               std::int16_t* to) {
  const std::size_t whole_cells = cells - cells % kSquareSize;
  const std::size_t whole_months = months - months % kSquareSize;
  for (std::size_t cell = 0; cell < whole_cells; cell += kSquareSize) {
    for (std::size_t month = 0; month < whole_months; month += kSquareSize) {
      transpose_square(from + month * cells + cell, cells, to + cell * months + month,
                       months);
    }
  }
  // The values outside the full squares: all months of the last cells, and the last
  // months of the other cells.
  for (std::size_t cell = 0; cell < cells; ++cell) {
    const std::size_t first_month = cell < whole_cells ? whole_months : 0;
    for (std::size_t month = first_month; month < months; ++month) {
      to[cell * months + month] = from[month * cells + cell];
    }
  }
}

}  // namespace veldmark
