// How much of a file is read or written at a time.

#ifndef VELDMARK_UTIL_PIECE_SIZE_H_
#define VELDMARK_UTIL_PIECE_SIZE_H_

#include <cstddef>

namespace veldmark {

// In bytes: so many that the system calls cost little, and so few that they stay in the
// second-level cache until they are converted.
constexpr std::size_t kPieceSize = std::size_t{256} * 1024;

}  // namespace veldmark

#endif  // VELDMARK_UTIL_PIECE_SIZE_H_
