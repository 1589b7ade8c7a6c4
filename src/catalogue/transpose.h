// Transposes blocks of values, such as the months of a row into series.

#ifndef VELDMARK_CATALOGUE_TRANSPOSE_H_
#define VELDMARK_CATALOGUE_TRANSPOSE_H_

#include <cstddef>
#include <cstdint>

namespace veldmark {

constexpr std::size_t kSquareSize = 8;

// Copies a square of 8 x 8 values, transposed: from[i * from_step + j] goes to
// to[j * to_step + i], for i and j from 0 to 7. Requires that the two do not overlap.
//
// Uses the compiler's own 128-bit vectors, which work on every processor.
void transpose_square(const std::int16_t* from, std::size_t from_step, std::int16_t* to,
                      std::size_t to_step);

// Copies a block of values transposed: value [month * cells + cell] of `from` goes to
// [cell * months + month] of `to`. Requires that the two do not overlap.
void transpose(const std::int16_t* from, std::size_t months, std::size_t cells,
               std::int16_t* to);

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_TRANSPOSE_H_
