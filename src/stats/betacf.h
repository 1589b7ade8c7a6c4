// The continued fraction for the incomplete beta function.

#ifndef VELDMARK_STATS_BETACF_H_
#define VELDMARK_STATS_BETACF_H_

namespace veldmark {

// Evaluates the continued fraction of the incomplete beta function for a, b > 0 and
// 0 <= x <= 1 by the modified Lentz method, in single precision. It converges fast for
// x < (a + 1) / (a + b + 2); betai calls it for no other x, except NaN or out of range.
// See docs/variance-test.md, "The arithmetic".
//
// Returns the fraction as soon as an iteration changes it by less than 3e-7 of itself.
// Kept on purpose: Betacf.ReturnsTheLastValueAfterAHundredIterations. If it has not
// converged after 100 iterations (a or b above about thirty thousand, or a NaN), the
// last value is returned without any notice.
float betacf(float a, float b, float x);

}  // namespace veldmark

#endif  // VELDMARK_STATS_BETACF_H_
