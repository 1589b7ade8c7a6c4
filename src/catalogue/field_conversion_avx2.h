// Converts fields with 256-bit vectors, on processors that have AVX2.

#ifndef VELDMARK_CATALOGUE_FIELD_CONVERSION_AVX2_H_
#define VELDMARK_CATALOGUE_FIELD_CONVERSION_AVX2_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace veldmark {

// Returns whether this processor has AVX2.
bool has_avx2();

// The number of fields that are converted at a time.
constexpr std::size_t kFieldsPerVector = 6;

// Converts fields to values modulo 2^16, six at a time from the first one. Stops before
// six fields of which one is not simple (blanks, an optional minus, digits up to the
// right edge).
//
//   fields   a multiple of five characters; one more character after them must be
//            readable
//   values   out: one value per field
//
// Returns how many fields were converted; 0 if there are fewer than six. Requires
// has_avx2().
std::size_t convert_fields_avx2(std::string_view fields, std::int16_t* values);

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_FIELD_CONVERSION_AVX2_H_
