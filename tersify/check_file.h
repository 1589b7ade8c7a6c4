// Checks one condensed file.

#ifndef VELDMARK_TERSIFY_CHECK_FILE_H_
#define VELDMARK_TERSIFY_CHECK_FILE_H_

#include <optional>
#include <string>
#include <vector>

#include "companion/progress_line.h"
#include "tersify/grid_shape.h"

namespace veldmark::tersify {

// What a check has found.
//
//   fault       what is not as in a complete file; see find_fault
//   years       "124 years, 1901 to 2024" of a complete file: the first year is that of
//               its name, or else the shape's
//   warnings    what can hardly be meant; see GridContent, other_years_warning
struct Verdict {
  std::optional<std::string> fault;
  std::string years;
  std::vector<std::string> warnings;
};

// Reads a condensed file to its end or its first fault. Throws Failure when the file
// can't be read.
//
//   shape    what is expected where the name tells no years
Verdict check_file(const std::string& name, const GridShape& shape,
                   const companion::ProgressLine::Screen& screen);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_CHECK_FILE_H_
