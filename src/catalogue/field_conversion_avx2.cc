#include "catalogue/field_conversion_avx2.h"

#include <cstring>

#include "grid/grid_layout.h"

#if defined(__x86_64__) && defined(__GNUC__)

#include <immintrin.h>

namespace veldmark {
namespace {

// Each 128-bit half of a vector holds three fields, 15 characters; the 16th character
// is ignored. The masks have one bit per character.
constexpr std::uint32_t both_halves(std::uint32_t half) { return half | half << 16U; }
constexpr std::uint32_t kAllCharacters = both_halves(0b111111111111111);
constexpr std::uint32_t kLastCharacters = both_halves(0b100001000010000);
constexpr std::uint32_t kOtherCharacters = kAllCharacters & ~kLastCharacters;

constexpr int kCharactersPerHalf = 15;
constexpr char kZero = -1;  // the shuffle index that gives a zero byte
constexpr std::size_t kBytesPerHalf = 3 * sizeof(std::int16_t);

#define VELDMARK_AVX2 __attribute__((target("avx2")))

VELDMARK_AVX2 __m256i in_both_halves(__m128i half) {
  return _mm256_broadcastsi128_si256(half);
}

// Returns whether the six fields are simple, from the masks of their characters. In a
// simple field the last character is a digit, and every other character either is a
// blank or has a digit after it.
bool are_simple(std::uint32_t blanks, std::uint32_t minuses, std::uint32_t digits) {
  const bool known = ((blanks | minuses | digits) & kAllCharacters) == kAllCharacters;
  const bool end_in_digit = (digits & kLastCharacters) == kLastCharacters;
  const bool in_order =
      ((blanks | digits >> 1U) & kOtherCharacters) == kOtherCharacters;
  return known && end_in_digit && in_order;
}

// Returns the values of six fields, 32 bits each, three in each half.
//
//   digits   the value of each digit, 0 for other characters
//   minus    0xFF for each minus, 0 for other characters
VELDMARK_AVX2 inline __m256i signed_values(__m256i digits, __m256i minus) {
  // Each field in 32 bits: its last four characters, and its first one alone.
  const __m256i last_four = in_both_halves(_mm_setr_epi8(
      1, 2, 3, 4, 6, 7, 8, 9, 11, 12, 13, 14, kZero, kZero, kZero, kZero));
  const __m256i first_one =
      in_both_halves(_mm_setr_epi8(0, kZero, kZero, kZero, 5, kZero, kZero, kZero, 10,
                                   kZero, kZero, kZero, kZero, kZero, kZero, kZero));

  const __m256i tens = _mm256_set1_epi16(10 | 1 << 8);
  const __m256i hundreds = _mm256_set1_epi32(100 | 1 << 16);
  const __m256i pairs =
      _mm256_maddubs_epi16(_mm256_shuffle_epi8(digits, last_four), tens);
  const __m256i below_ten_thousand = _mm256_madd_epi16(pairs, hundreds);
  const __m256i ten_thousands = _mm256_madd_epi16(
      _mm256_shuffle_epi8(digits, first_one), _mm256_set1_epi32(10000));
  const __m256i magnitude = _mm256_add_epi32(below_ten_thousand, ten_thousands);

  const __m256i minus_anywhere = _mm256_or_si256(_mm256_shuffle_epi8(minus, last_four),
                                                 _mm256_shuffle_epi8(minus, first_one));
  const __m256i positive = _mm256_cmpeq_epi32(minus_anywhere, _mm256_setzero_si256());
  const __m256i negative = _mm256_xor_si256(positive, _mm256_set1_epi32(-1));
  return _mm256_sub_epi32(_mm256_xor_si256(magnitude, negative), negative);
}

// Stores the low 16 bits of the three values of each half.
VELDMARK_AVX2 inline void store_six(__m256i value, std::int16_t* values) {
  const __m256i low_halves =
      in_both_halves(_mm_setr_epi8(0, 1, 4, 5, 8, 9, kZero, kZero, kZero, kZero, kZero,
                                   kZero, kZero, kZero, kZero, kZero));
  const __m256i packed = _mm256_shuffle_epi8(value, low_halves);
  const std::int64_t first_three = _mm256_extract_epi64(packed, 0);
  const std::int64_t last_three = _mm256_extract_epi64(packed, 2);
  std::memcpy(values, &first_three, kBytesPerHalf);
  std::memcpy(values + 3, &last_three, kBytesPerHalf);
}

// Converts six simple fields. Returns false and stores nothing if one of them is not
// simple. Reads one character past the fields.
VELDMARK_AVX2 inline bool convert_six_fields(const char* fields, std::int16_t* values) {
  const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(fields));
  const __m128i high =
      _mm_loadu_si128(reinterpret_cast<const __m128i*>(fields + kCharactersPerHalf));
  const __m256i characters = _mm256_set_m128i(high, low);

  const __m256i blank = _mm256_cmpeq_epi8(characters, _mm256_set1_epi8(' '));
  const __m256i minus = _mm256_cmpeq_epi8(characters, _mm256_set1_epi8('-'));
  const __m256i digit = _mm256_sub_epi8(characters, _mm256_set1_epi8('0'));
  const __m256i is_digit =
      _mm256_cmpeq_epi8(_mm256_min_epu8(digit, _mm256_set1_epi8(9)), digit);
  if (!are_simple(static_cast<std::uint32_t>(_mm256_movemask_epi8(blank)),
                  static_cast<std::uint32_t>(_mm256_movemask_epi8(minus)),
                  static_cast<std::uint32_t>(_mm256_movemask_epi8(is_digit)))) {
    return false;
  }
  const __m256i digits = _mm256_and_si256(digit, is_digit);
  store_six(signed_values(digits, minus), values);
  return true;
}

}  // namespace

bool has_avx2() { return static_cast<bool>(__builtin_cpu_supports("avx2")); }

VELDMARK_AVX2 std::size_t convert_fields_avx2(std::string_view fields,
                                              std::int16_t* values) {
  const std::size_t count = fields.size() / kFieldWidth;
  std::size_t converted = 0;
  while (count - converted >= kFieldsPerVector) {
    if (!convert_six_fields(&fields[converted * kFieldWidth], values + converted)) {
      return converted;
    }
    converted += kFieldsPerVector;
  }
  // Convert the remaining fields as part of the last six, some of them again.
  const bool some_left = converted != 0 && converted < count;
  if (some_left) {
    const std::size_t last_six = count - kFieldsPerVector;
    if (convert_six_fields(&fields[last_six * kFieldWidth], values + last_six)) {
      return count;
    }
  }
  return converted;
}

}  // namespace veldmark

#else

namespace veldmark {

bool has_avx2() { return false; }

std::size_t convert_fields_avx2(std::string_view /*fields*/, std::int16_t* /*values*/) {
  return 0;
}

}  // namespace veldmark

#endif
