// F-test of two samples for equal variance. The degrees of freedom are adjusted for
// kurtosis.

#ifndef VELDMARK_STATS_FTEST_H_
#define VELDMARK_STATS_FTEST_H_

#include <cstdint>
#include <span>

#include "stats/betai.h"

namespace veldmark {

// Tests whether two samples have the same variance. Single precision; see
// docs/variance-test.md, "The arithmetic".
//
//   data1, data2   the samples, in the same unit
//   n1, n2         in: how many values of each sample are used, 0..size, both included
//                  out: the adjusted counts d1 and d2, at least 2
//   f              out: the larger variance over the smaller, 1 or more in exact
//                  arithmetic; +Inf if only the smaller is 0
//   prob           out: the two-sided probability of such a large f if the variances
//                  are equal, 0..1
//
// Kept on purpose: AdjustedCount.IsOneLessThanTheCountAtKurtosisThreeApartFromRounding.
// The degrees of freedom are d1 - 1 and d2 - 1, so normally distributed samples
// (kurtosis 3) of n values are tested with n - 2.
//
// f and prob are NaN if a sample has fewer than two values or both variances are 0; the
// caller tests f. Rounding may give a constant sample a negative variance, and so a
// negative f. The argument of betai may then be out of range: `on_bad_argument` is
// called once, and prob is NaN.
void ftest(std::span<const float> data1, std::int32_t& n1, std::span<const float> data2,
           std::int32_t& n2, float& f, float& prob,
           const BadArgumentHandler& on_bad_argument);

// Returns the adjusted count for a sample of `n` values with the pooled kurtosis
// `kurtosis`: 2n / (kurtosis - (n - 3) / (n - 1)), truncated. Apart from rounding that
// is n - 1 at kurtosis 3.
//
// The result is at least 2; it is 2 if the quotient is negative, NaN or too large for a
// 32-bit integer.
std::int32_t adjusted_count(float n, float kurtosis);

}  // namespace veldmark

#endif  // VELDMARK_STATS_FTEST_H_
