// Five-character fields to values, many at a time: the hot loop of reading.

#ifndef VELDMARK_CATALOGUE_FIELD_CONVERSION_H_
#define VELDMARK_CATALOGUE_FIELD_CONVERSION_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "grid/grid_layout.h"

namespace veldmark {

// Converts neighbouring fields, each as parse_integer does, to values modulo 2^16.
//
//   fields   whole fields: a multiple of five characters, and another character behind
//            them that may be read, as the line end is
//   values   out: one value per field
//
// Returns false when a field is no integer; `values` is then incomplete.
bool convert_fields(std::string_view fields, std::int16_t* values);

// The same, one field at a time, for all processors.
bool convert_fields_by_tables(std::string_view fields, std::int16_t* values);

// Converts a field written as usual (blanks, an optional minus, digits up to the right
// edge) to its value modulo 2^16. Returns false and leaves `value` alone for any other
// field, which needs parse_integer.
bool convert_field_by_tables(const char* field, std::int16_t& value);

// Returns whether all of the fields are integers, quickly where they hold the missing
// code. `missing` is at least as long as `fields` and holds that code in every field.
bool are_integers(std::string_view fields, std::string_view missing);

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_FIELD_CONVERSION_H_
