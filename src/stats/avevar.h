// Mean and variance of a sample.

#ifndef VELDMARK_STATS_AVEVAR_H_
#define VELDMARK_STATS_AVEVAR_H_

#include <cstdint>
#include <span>

namespace veldmark {

// Computes the mean and the variance of the first `n` values of `data`: first the mean,
// then the deviations from it. Single precision, in the order of the values; see
// docs/variance-test.md, "The arithmetic".
//
//   n     0..data.size(), both included
//   ave   out: the mean, in the unit of the sample; NaN for n = 0
//   var   out: the variance with divisor n - 1, in that unit squared; NaN for n = 0 and
//         n = 1. It is corrected for the rounding of the mean by subtracting the square
//         of the summed deviations over n.
//
// A constant sample is not treated specially: if its mean is rounded, the variance is a
// tiny number of either sign.
void avevar(std::span<const float> data, std::int32_t n, float& ave, float& var);

}  // namespace veldmark

#endif  // VELDMARK_STATS_AVEVAR_H_
