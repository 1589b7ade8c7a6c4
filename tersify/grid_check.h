// Checks whether condensed text is a complete grid file, and finds its first fault.
// Does no file I/O.

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

// Is called with each valid line of a grid file and its number, counted from 1.
using OnLine = std::function<void(std::int64_t line, std::string_view text)>;

// Checks all lines. A complete grid file has whole years: at least one, and no fewer
// than its name gives. Each line has `shape.columns` fields of five characters: blanks,
// an optional sign, and digits up to the field's right edge. A blank field and a number
// with a blank in it or after it are faults: veldmark's own reader accepts them, but no
// producer writes them. CR LF counts as a newline, and the last line may lack its
// newline.
//
//   shape      the expected extent
//   on_line    is called with every valid line, until a fault is found
//
// Returns the first fault, with its line, year, month, row and column; nullopt if the
// file is complete.
std::optional<std::string> find_fault(companion::LineBuffer& lines,
                                      const GridShape& shape,
                                      const OnLine& on_line = {});

// Returns the number of whole, valid fields at the front of `line`, before the first
// invalid one. Requires kLinePadding readable characters after the line.
std::int32_t count_good_fields(std::string_view line);

// Returns whether the next twelve fields are valid and have no plus sign, which is true
// of nearly all. Requires 64 readable characters.
bool are_twelve_good_fields(const char* fields);

// The portable version of count_good_fields; needs no readable characters after the
// line. Both must agree.
std::int32_t count_good_fields_scalar(std::string_view line);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_GRID_CHECK_H_
