#include "tersify/check_file.h"

#include <cstddef>
#include <cstdint>

#include "tersify/grid_check.h"
#include "tersify/input_file.h"
#include "tersify/line_buffer.h"

namespace veldmark::tersify {

std::optional<std::string> check_file(const std::string& name, const GridShape& shape,
                                      const ProgressLine::Screen& screen) {
  InputFile input(name);
  ProgressLine progress(screen, name, input.size());
  LineBuffer lines([&](char* buffer, std::size_t size) {
    const std::size_t count = input.read(buffer, size);
    progress.add(static_cast<std::int64_t>(count));
    return count;
  });
  return find_fault(lines, shape);
}

}  // namespace veldmark::tersify
