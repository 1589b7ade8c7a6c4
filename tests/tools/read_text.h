// Reads a series from a text.

#ifndef VELDMARK_TESTS_TOOLS_READ_TEXT_H_
#define VELDMARK_TESTS_TOOLS_READ_TEXT_H_

#include <cstddef>
#include <string_view>

#include "series_to_grid/series_file.h"

namespace veldmark::series_to_grid {

inline Series read_text(std::string_view text) {
  return read_series([rest = text](char* buffer, std::size_t size) mutable {
    const std::size_t count = rest.copy(buffer, size);
    rest.remove_prefix(count);
    return count;
  });
}

}  // namespace veldmark::series_to_grid

#endif  // VELDMARK_TESTS_TOOLS_READ_TEXT_H_
