// The continued fraction behind the incomplete beta function.

#ifndef VELDMARK_STATS_BETACF_H_
#define VELDMARK_STATS_BETACF_H_

namespace veldmark {

// Evaluates the continued fraction of the incomplete beta function for a, b > 0 and
// 0 <= x <= 1 by the modified Lentz method. It converges fast for x below
// (a + 1) / (a + b + 2); betai never calls it for anything else unless x is NaN or bad.
//
// Returns the fraction, once a step changes it by less than 3e-7 of itself.
// Kept on purpose: Betacf.ReturnsWhatItHasAfterAHundredSteps. Without that after 100
// steps (a or b beyond some thirty thousand, or a NaN) the value reached so far is
// returned, and nobody is told.
// Source     docs/variance-test.md, "The arithmetic"; single precision.
float betacf(float a, float b, float x);

}  // namespace veldmark

#endif  // VELDMARK_STATS_BETACF_H_
