// The regularised incomplete beta function.

#ifndef VELDMARK_STATS_BETAI_H_
#define VELDMARK_STATS_BETAI_H_

#include <functional>
#include <string_view>

namespace veldmark {

// betai calls this with the text "bad argument x in betai" if x is outside 0..1; the
// statistics have no console to write to. Must not be empty. Exceptions from it are
// passed on.
using BadArgumentHandler = std::function<void(std::string_view)>;

// Returns I_x(a, b), the regularised incomplete beta function, for a, b > 0.
//
//   x     0..1, both included: I_0 is 0, I_1 is 1
//
// For x below (a + 1) / (a + b + 2) it is evaluated directly, otherwise (for a NaN,
// too) as 1 - I_(1-x)(b, a). Single precision, with the 32-bit logarithm and
// exponential of the system's library; see docs/variance-test.md, "The arithmetic".
//
// An x outside 0..1 is reported to `on_bad_argument`; the result is then NaN. For a NaN
// x the result is NaN without a report.
float betai(float a, float b, float x, const BadArgumentHandler& on_bad_argument);

}  // namespace veldmark

#endif  // VELDMARK_STATS_BETAI_H_
