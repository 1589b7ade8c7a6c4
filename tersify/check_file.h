// Checks one condensed file.

#ifndef VELDMARK_TERSIFY_CHECK_FILE_H_
#define VELDMARK_TERSIFY_CHECK_FILE_H_

#include <optional>
#include <string>

#include "tersify/grid_shape.h"
#include "tersify/progress_line.h"

namespace veldmark::tersify {

// Reads a condensed file to its end or its first fault; see find_fault.
// Errors     Failure when the file cannot be read.
std::optional<std::string> check_file(const std::string& name, const GridShape& shape,
                                      const ProgressLine::Screen& screen);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_CHECK_FILE_H_
