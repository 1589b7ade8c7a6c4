// Classifies 64 consecutive characters into bit masks: bit i stands for character i.

#ifndef VELDMARK_TERSIFY_CHARACTER_MASKS_H_
#define VELDMARK_TERSIFY_CHARACTER_MASKS_H_

#include <cstddef>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace veldmark::tersify {

constexpr std::size_t kMaskedCharacters = 64;

struct CharacterMasks {
  std::uint64_t blanks = 0;
  std::uint64_t minuses = 0;
  std::uint64_t digits = 0;
  std::uint64_t zeros = 0;  // digits too
};

// The portable version; the vectors below must agree with it.
inline CharacterMasks find_kinds_scalar(const char* characters) {
  CharacterMasks masks;
  for (std::size_t i = 0; i < kMaskedCharacters; ++i) {
    const char c = characters[i];
    const std::uint64_t bit = std::uint64_t{1} << i;
    if (c == ' ') {
      masks.blanks |= bit;
    }
    if (c == '-') {
      masks.minuses |= bit;
    }
    if ('0' <= c && c <= '9') {
      masks.digits |= bit;
    }
    if (c == '0') {
      masks.zeros |= bit;
    }
  }
  return masks;
}

#if defined(__SSE2__)

// SSE2 is part of x86-64, so no run-time dispatch is needed. AVX2 gains nothing: most
// of the time goes into reading and writing.
inline CharacterMasks find_kinds(const char* characters) {
  constexpr std::size_t kVector = 16;
  CharacterMasks masks;
  for (std::size_t i = 0; i < kMaskedCharacters; i += kVector) {
    const __m128i c = _mm_loadu_si128(reinterpret_cast<const __m128i*>(characters + i));
    const __m128i digit = _mm_sub_epi8(c, _mm_set1_epi8('0'));
    const auto bits = [i](__m128i kind) {
      return std::uint64_t{static_cast<std::uint32_t>(_mm_movemask_epi8(kind))} << i;
    };
    masks.blanks |= bits(_mm_cmpeq_epi8(c, _mm_set1_epi8(' ')));
    masks.minuses |= bits(_mm_cmpeq_epi8(c, _mm_set1_epi8('-')));
    masks.digits |= bits(_mm_cmpeq_epi8(_mm_min_epu8(digit, _mm_set1_epi8(9)), digit));
    masks.zeros |= bits(_mm_cmpeq_epi8(c, _mm_set1_epi8('0')));
  }
  return masks;
}

#else

inline CharacterMasks find_kinds(const char* characters) {
  return find_kinds_scalar(characters);
}

#endif

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_CHARACTER_MASKS_H_
