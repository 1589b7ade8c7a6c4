// Numbers in fields of fixed width: written right-aligned, parsed strictly.

#ifndef VELDMARK_UTIL_FIXED_FIELD_H_
#define VELDMARK_UTIL_FIXED_FIELD_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace veldmark {

// Returns `value` right-aligned in `width` characters; `width` asterisks if it does not
// fit. Requires width >= 1.
std::string fixed_integer(std::int64_t value, int width);

// Returns `value` right-aligned in `width` characters with `decimals` decimals. The
// exact binary value is rounded half to even; negative zero keeps its sign ("-0.00").
// NaN becomes "NaN", infinities "Inf" and "-Inf". Returns `width` asterisks if the text
// does not fit. Requires width >= 1 and decimals >= 0.
std::string fixed_real(float value, int width, int decimals);

// Parses an integer: an optional sign and digits; blanks and tabs are ignored wherever
// they stand.
//
// Returns the value; 0 for a field of blanks and tabs only; nullopt for any other
// character, a sign without a digit, or a value that does not fit in 32 bits.
std::optional<std::int32_t> parse_integer(std::string_view field);

}  // namespace veldmark

#endif  // VELDMARK_UTIL_FIXED_FIELD_H_
