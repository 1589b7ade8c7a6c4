// Converts five-character fields to values, many at a time: the hot loop of reading.

#ifndef VELDMARK_CATALOGUE_FIELD_CONVERSION_H_
#define VELDMARK_CATALOGUE_FIELD_CONVERSION_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "grid/grid_layout.h"

namespace veldmark {

// Converts consecutive fields to values modulo 2^16, each as parse_integer does.
//
//   fields   a multiple of five characters; one more character after them must be
//            readable, such as the newline
//   values   out: one value per field
//
// Returns false if a field is not an integer; `values` is then incomplete.
bool convert_fields(std::string_view fields, std::int16_t* values);

// Does the same one field at a time, on any processor.
bool convert_fields_by_tables(std::string_view fields, std::int16_t* values);

// Converts a simple field (blanks, an optional minus, digits up to the right edge) to
// its value modulo 2^16. Returns false for any other field and leaves `value`
// unchanged.
bool convert_field_by_tables(const char* field, std::int16_t& value);

// Returns whether all fields are integers; fast for fields that contain the missing
// code. Requires that `missing` is at least as long as `fields` and has that code in
// every field.
bool are_integers(std::string_view fields, std::string_view missing);

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_FIELD_CONVERSION_H_
