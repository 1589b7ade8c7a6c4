// Numbers in columns of fixed width: written right-aligned, read strictly.

#ifndef VELDMARK_UTIL_FIXED_FIELD_H_
#define VELDMARK_UTIL_FIXED_FIELD_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace veldmark {

// Writes `value` right-aligned in `width` columns; a value whose text needs more
// columns gives `width` asterisks. Requires width >= 1.
std::string fixed_integer(std::int64_t value, int width);

// Writes `value` right-aligned in `width` columns with `decimals` decimals, rounded
// half to even on the exact binary value; the sign of zero is kept ("-0.00").
// NaN is written "NaN", infinities "Inf" and "-Inf". What doesn't fit gives `width`
// asterisks. Requires width >= 1, decimals >= 0.
std::string fixed_real(float value, int width, int decimals);

// Reads an integer: blanks and tabs anywhere are skipped, then an optional sign
// and digits.
//
// Returns the value; 0 for a field of nothing but blanks and tabs; nullopt for any
// other character, a sign without a digit, or a value beyond 32 bits.
std::optional<std::int32_t> parse_integer(std::string_view field);

}  // namespace veldmark

#endif  // VELDMARK_UTIL_FIXED_FIELD_H_
