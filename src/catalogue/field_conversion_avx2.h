// Field conversion with 256-bit vectors, for processors that have them.

#ifndef VELDMARK_CATALOGUE_FIELD_CONVERSION_AVX2_H_
#define VELDMARK_CATALOGUE_FIELD_CONVERSION_AVX2_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace veldmark {

// Returns whether this processor has what `convert_fields_avx2` needs.
bool has_avx2();

// How many fields are converted at a time.
constexpr std::size_t kFieldsPerVector = 6;

// Converts fields from the first on, six at a time, to values modulo 2^16, as long as
// all six are usual: blanks, an optional minus, digits up to the right edge.
//
//   fields   whole fields: a multiple of five characters, and another character behind
//            them that may be read
//   values   out: one value per field
//
// Returns how many fields were converted; fewer than six fields are never converted.
// Requires has_avx2().
std::size_t convert_fields_avx2(std::string_view fields, std::int16_t* values);

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_FIELD_CONVERSION_AVX2_H_
