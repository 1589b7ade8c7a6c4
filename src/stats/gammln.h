// The natural logarithm of the gamma function.

#ifndef VELDMARK_STATS_GAMMLN_H_
#define VELDMARK_STATS_GAMMLN_H_

namespace veldmark {

// Returns ln(gamma(xx)) for xx > 0, by a Lanczos series of six terms.
//
// Works in 64 bits and rounds only the result to 32. The series is good to 2e-10, so
// that rounding is the error: at xx = 1600 half a thousandth, which betai, taking
// differences of these values, hands on to prob. At xx = 2, where the true value is 0,
// the result is a tiny number instead.
// Source     docs/variance-test.md, "The arithmetic".
float gammln(float xx);

}  // namespace veldmark

#endif  // VELDMARK_STATS_GAMMLN_H_
