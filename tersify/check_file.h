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
//   warnings    what can hardly be meant; see GridContent
struct Verdict {
  std::optional<std::string> fault;
  std::vector<std::string> warnings;
};

// Reads a condensed file to its end or its first fault. Throws Failure when the file
// can't be read.
Verdict check_file(const std::string& name, const GridShape& shape,
                   const companion::ProgressLine::Screen& screen);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_CHECK_FILE_H_
