// The test of two samples for equal variance, with degrees of freedom adjusted for
// kurtosis.

#ifndef VELDMARK_STATS_FTEST_H_
#define VELDMARK_STATS_FTEST_H_

#include <cstdint>
#include <span>

#include "stats/betai.h"

namespace veldmark {

// Tests whether two samples have the same variance.
//
//   data1, data2   the samples, in one unit
//   n1, n2         in: how many values of each count, 0..size, both included
//                  out: the adjusted counts d1 and d2, at least 2
//   f              out: the larger variance over the smaller, 1 or more in exact
//                  arithmetic; +Inf when only the smaller is 0
//   prob           out: the two-sided probability of so large an f under equal
//                  variances, 0..1
//
// Kept on purpose: AdjustedCount.IsOneLessThanTheCountAtKurtosisThreeButForRounding.
// The degrees of freedom are d1 - 1 and d2 - 1, so normal-shaped samples (kurtosis 3)
// of n values are tested with n - 2. Edges      a sample of 0 or 1 values, or no
// variance in either, gives a NaN f and a
//            NaN prob. A constant sample may get a negative variance by rounding, and
//            f with it.
// The caller tests f for NaN. With a negative f the argument of betai may be bad:
// `on_bad_argument` is called then, once, and prob is NaN.
// Source     docs/variance-test.md, "The arithmetic"; single precision.
void ftest(std::span<const float> data1, std::int32_t& n1, std::span<const float> data2,
           std::int32_t& n2, float& f, float& prob,
           const BadArgumentHandler& on_bad_argument);

// Returns the count that stands for a sample of `n` values whose pooled kurtosis is
// `kurtosis`: 2n / (kurtosis - (n - 3) / (n - 1)), which is n - 1 at kurtosis 3 but for
// rounding, with its fraction cut off.
//
// The result is 2 or more; 2 also where the quotient is negative, NaN or too large for
// a 32-bit integer.
std::int32_t adjusted_count(float n, float kurtosis);

}  // namespace veldmark

#endif  // VELDMARK_STATS_FTEST_H_
