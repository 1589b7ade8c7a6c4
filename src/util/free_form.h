// Free-form values: read from a line where blanks, tabs, commas or slashes separate
// them; written as records that start with one blank.

#ifndef VELDMARK_UTIL_FREE_FORM_H_
#define VELDMARK_UTIL_FREE_FORM_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace veldmark {

// Returns the first value on `line`: leading blanks and tabs are skipped, and the value
// ends before the next blank, tab, comma or slash. Empty if the line is blank or starts
// with a comma or slash. Quotes are ordinary characters.
std::string_view first_value(std::string_view line);

// Parses a logical value. Returns true for T or t after an optional full stop; false
// for anything else, an empty value included.
bool parse_logical(std::string_view value);

// Parses a real: an optional sign, at least one digit with at most one full stop, and
// an optional exponent (E, e, D or d, optional sign, digits).
//
// Returns the nearest 32-bit real, infinity if it is out of range; nullopt if `value`
// has any other form.
std::optional<float> parse_real(std::string_view value);

// These format the items of a free-form record. A record is one blank and then its
// items without separators; text items are written as they are.
//
//   integer   one blank and the digits
//   real      one blank, then 15 characters, right-aligned: the shortest decimal that
//             parses back to the same 32-bit real. Fixed notation wins a tie with
//             exponent notation; of equally short decimals the nearest is taken. ".0"
//             is added where there is no fraction. 15 asterisks if it does not fit.
std::string free_form_integer(std::int64_t value);
std::string free_form_real(float value);

}  // namespace veldmark

#endif  // VELDMARK_UTIL_FREE_FORM_H_
