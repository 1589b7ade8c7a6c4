// Mean and variance of one sample.

#ifndef VELDMARK_STATS_AVEVAR_H_
#define VELDMARK_STATS_AVEVAR_H_

#include <cstdint>
#include <span>

namespace veldmark {

// Computes the mean and the variance of the first `n` values of `data`, in two passes.
//
//   n     0..data.size(), both included
//   ave   out: the mean, in the unit of the sample
//   var   out: the variance with divisor n - 1, in that unit squared; the square of the
//         summed deviations over n, zero but for the rounding of the mean, is taken off
//
// Edges      n = 0 and n = 1 give a NaN variance (n = 0 a NaN mean too). A constant
//            sample gets no special case: where the rounded mean misses the constant,
//            the variance comes out tiny and of either sign.
// Source     docs/variance-test.md, "The arithmetic"; single precision, in order.
void avevar(std::span<const float> data, std::int32_t n, float& ave, float& var);

}  // namespace veldmark

#endif  // VELDMARK_STATS_AVEVAR_H_
