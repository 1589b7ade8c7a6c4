// Checks one condensed file.

#ifndef VELDMARK_TERSIFY_CHECK_FILE_H_
#define VELDMARK_TERSIFY_CHECK_FILE_H_

#include <optional>
#include <string>
#include <vector>

#include "companion/progress_line.h"
#include "tersify/grid_shape.h"

namespace veldmark::tersify {

// The result of a check.
//
//   fault       the first fault of an incomplete or damaged file; see find_fault
//   years       for a complete file, "124 years, 1901 to 2024"; the first year is taken
//               from its name, or else from the shape
//   warnings    implausible content; see GridContent and other_years_warning
struct Verdict {
  std::optional<std::string> fault;
  std::string years;
  std::vector<std::string> warnings;
};

// Reads a condensed file to its end or its first fault. Throws Failure if the file
// can't be read.
//
//   shape    the expected extent; years in the file's name take precedence
Verdict check_file(const std::string& name, const GridShape& shape,
                   const companion::ProgressLine::Screen& screen);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_CHECK_FILE_H_
