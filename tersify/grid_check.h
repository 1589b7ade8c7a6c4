// Tells whether condensed text is a complete grid file, or where its first fault is.
// Nothing here touches a file.

#ifndef VELDMARK_TERSIFY_GRID_CHECK_H_
#define VELDMARK_TERSIFY_GRID_CHECK_H_

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "companion/line_buffer.h"
#include "tersify/grid_shape.h"

namespace veldmark::tersify {

// Is handed a line of a grid file that is not at fault, with its number from 1.
using OnLine = std::function<void(std::int64_t line, std::string_view text)>;

// Checks all lines. A grid file is complete when it has the lines of whole years, one
// at least and no fewer than its name tells, and each line just its fields of five
// characters: blanks, an optional sign, and digits up to the field's right edge.
// A blank field and a number with a blank in
// it or after it are faults, although veldmark's own reader accepts them: no producer
// writes them. CR LF is a line end, too, and the last line may lack its line end.
//
//   shape    its years are those to expect, and those to measure a faulty file by
//   see      is handed every line that is not at fault
//
// Returns the first fault, with its line, year, month, row and column; nullopt when the
// file is complete.
std::optional<std::string> find_fault(companion::LineBuffer& lines,
                                      const GridShape& shape, const OnLine& see = {});

// Returns the number of whole, faultless fields at the front of `line`. Requires
// kLinePadding readable characters after the line.
std::int32_t count_good_fields(std::string_view line);

// The same, a field at a time.
std::int32_t count_good_fields_scalar(std::string_view line);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_GRID_CHECK_H_
