// A small grid file as an open input.

#ifndef VELDMARK_TESTS_EXTRACT_GRID_INPUT_H_
#define VELDMARK_TESTS_EXTRACT_GRID_INPUT_H_

#include <fcntl.h>

#include <cstdint>
#include <string>

#include "catalogue/variable_name.h"
#include "extract/input_file.h"
#include "support/temporary_folder.h"

namespace veldmark::extract {

// Writes `text` to the file "grid" and opens it: mean temperatures of 1901..last_year.
inline InputFile write_grid_input(const std::string& text, std::int32_t last_year) {
  veldmark::testing::write_file("grid", text);
  return {.name = "grid",
          .entry = *find_by_short_name("tmp"),
          .file = FileDescriptor("grid", O_RDONLY),
          .size = static_cast<std::int64_t>(text.size()),
          .line_end_size = 1,
          .years = {.first = 1901, .last = last_year}};
}

}  // namespace veldmark::extract

#endif  // VELDMARK_TESTS_EXTRACT_GRID_INPUT_H_
