// Free-form values: typed without columns, separated by blanks, tabs, commas or
// slashes; written as records that start with one blank.

#ifndef VELDMARK_UTIL_FREE_FORM_H_
#define VELDMARK_UTIL_FREE_FORM_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace veldmark {

// Returns the first value on `line`: leading blanks and tabs are skipped, and the value
// ends before the next blank, tab, comma or slash. Empty if the line is
// blank or starts with a comma or slash. Quotes are ordinary characters.
std::string_view first_value(std::string_view line);

// Reads a logical value: after one optional full stop, T or t is true; anything else,
// no value too, is false.
bool parse_logical(std::string_view value);

// Reads a real: optional sign, digits with at most one full stop and at least one
// digit, optional exponent (E, e, D or d, optional sign, digits).
//
// Returns the nearest 32-bit real, infinity beyond their range; nullopt when `value` is
// written otherwise.
std::optional<float> parse_real(std::string_view value);

// Items of a free-form record. A record is one blank and its items one after another:
// texts as they are, an integer as one blank and its digits, a real as one blank and
// the shortest decimal that reads back to the same 32-bit real (fixed or with an
// exponent, fixed where both are as short; of equally short ones the nearest),
// right-aligned in 15 columns, with ".0" where it has no fraction; 15 asterisks where
// that needs more columns.
std::string free_form_integer(std::int64_t value);
std::string free_form_real(float value);

}  // namespace veldmark

#endif  // VELDMARK_UTIL_FREE_FORM_H_
