// The natural logarithm of the gamma function.

#ifndef VELDMARK_STATS_GAMMLN_H_
#define VELDMARK_STATS_GAMMLN_H_

namespace veldmark {

// Returns ln(gamma(xx)) for xx > 0, by a Lanczos series of six terms.
//
// Computes in 64 bits and rounds the result to 32. The series is accurate to 2e-10, so
// the rounding is the larger error: 0.0005 at xx = 1600. betai subtracts such values,
// so the error reaches prob. At xx = 2, where the exact value is 0, the result is a
// tiny number. See docs/variance-test.md, "The arithmetic".
float gammln(float xx);

}  // namespace veldmark

#endif  // VELDMARK_STATS_GAMMLN_H_
