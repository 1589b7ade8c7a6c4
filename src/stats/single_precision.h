// What the statistics ask of the machine's 32-bit reals.
//
// Every operation is rounded to 32 bits before the next one starts, so that f and its
// probability have the same bits everywhere. Three things would break that: wider
// intermediate results (refused here), a fused multiply-add (switched off for every
// target by -ffp-contract=off) and -ffast-math (not used; NaN and the infinities are
// results that the callers test for).

#ifndef VELDMARK_STATS_SINGLE_PRECISION_H_
#define VELDMARK_STATS_SINGLE_PRECISION_H_

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <limits>

namespace veldmark {

static_assert(FLT_EVAL_METHOD == 0, "32-bit operations must be rounded to 32 bits");
static_assert(std::numeric_limits<float>::is_iec559 &&
              std::numeric_limits<double>::is_iec559);

// Cuts the fraction off `value`: 10.9999 gives 10, -1.5 gives -1.
//
// Returns the most negative 32-bit integer for NaN, the infinities and everything
// outside the 32-bit range, which the language's own conversion would leave undefined.
inline std::int32_t truncated_to_int32(float value) {
  constexpr float kTwoToThe31 = 2147483648.0F;
  if (std::fabs(value) < kTwoToThe31) {
    return static_cast<std::int32_t>(value);
  }
  return std::numeric_limits<std::int32_t>::min();
}

}  // namespace veldmark

#endif  // VELDMARK_STATS_SINGLE_PRECISION_H_
