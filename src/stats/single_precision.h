// What the statistics require of 32-bit arithmetic.
//
// Each operation must be rounded to 32 bits before the next, so that f and its
// probability have the same bits on every machine. Three things would break that: wider
// intermediate results (refused below), fused multiply-add (switched off for every
// target by -ffp-contract=off) and -ffast-math (not used; callers test for NaN and
// infinities).

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

// Returns `value` truncated toward zero: 10 for 10.9999, -1 for -1.5. Returns the
// smallest 32-bit integer for NaN, infinities and values out of range, for which a cast
// would be undefined.
inline std::int32_t truncated_to_int32(float value) {
  constexpr float kTwoToThe31 = 2147483648.0F;
  if (std::fabs(value) < kTwoToThe31) {
    return static_cast<std::int32_t>(value);
  }
  return std::numeric_limits<std::int32_t>::min();
}

}  // namespace veldmark

#endif  // VELDMARK_STATS_SINGLE_PRECISION_H_
