// Tells whether condensed text is a complete grid file, or where its first fault is.
// Nothing here touches a file.

#ifndef VELDMARK_TERSIFY_GRID_CHECK_H_
#define VELDMARK_TERSIFY_GRID_CHECK_H_

#include <optional>
#include <string>
#include <string_view>

#include "tersify/grid_shape.h"
#include "tersify/line_buffer.h"

namespace veldmark::tersify {

// Checks all lines. A grid file is complete when it has just the lines of `shape`, and
// each line just its fields of five characters: blanks, an optional sign, and digits up
// to the field's right edge. A blank field and a number with a blank in it or after it
// are faults, although veldmark's own reader puts up with them: no producer means them.
// CR LF is a line end, too, and the last line may lack its line end.
//
// Result     the first fault, with its line, year, month, row and column; nothing when
//            the file is complete.
std::optional<std::string> find_fault(LineBuffer& lines, const GridShape& shape);

// The number of whole, faultless fields at the front of `line`.
//   REQUIRES kRoomAroundLine readable characters after the line.
int count_good_fields(std::string_view line);

// The same, a field at a time.
int count_good_fields_plainly(std::string_view line);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_GRID_CHECK_H_
