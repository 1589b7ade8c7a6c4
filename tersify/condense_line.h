// Converts a line of a published file to a line of a condensed file: the hot loop.
//
//   published   720 integers of any width, separated by blanks or tabs, which may also
//               precede the first and follow the last one; a sign and leading zeros are
//               allowed
//   condensed   720 fields of five characters, right-aligned, without separator
//
// An integer keeps its value and gets its shortest text: "+007" becomes "7" and "-0"
// becomes "0".

#ifndef VELDMARK_TERSIFY_CONDENSE_LINE_H_
#define VELDMARK_TERSIFY_CONDENSE_LINE_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "tersify/grid_shape.h"

namespace veldmark::tersify {

// Characters of a condensed line, without its newline.
constexpr std::size_t kCondensedLine = kFieldWidth * kGridColumns;

// Size of the output buffer that the functions below need. Surplus numbers are written
// before they are counted: up to 32, which fit in a block of 64 characters. That takes
// 168 characters more than a line.
constexpr std::size_t kCondensedCapacity = 2 * kCondensedLine;

// Why a line cannot be condensed.
struct LineFault {
  std::int32_t field{};  // 1..721, the first invalid field
  std::string reason;    // "'1x' is not an integer"
};

// Condenses a line.
//
//   line     without line end; requires companion::kLinePadding readable characters
//            on either side
//   output   gets 3600 characters, or undefined ones after a fault; requires
//            kCondensedCapacity
//
// Returns the first fault, counted from the left; nullopt when there is none.
std::optional<LineFault> condense_line(std::string_view line, char* output);

// The same for a usual line alone: blanks as separators, and every integer already in
// its shortest text. Returns false when the line is anything else.
bool condense_line_fast(std::string_view line, char* output);

// The same for any line, a field at a time.
std::optional<LineFault> condense_line_by_fields(std::string_view line, char* output);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_CONDENSE_LINE_H_
