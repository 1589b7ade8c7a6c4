// The regularised incomplete beta function.

#ifndef VELDMARK_STATS_BETAI_H_
#define VELDMARK_STATS_BETAI_H_

#include <functional>
#include <string_view>

namespace veldmark {

// What betai calls with the text "bad argument x in betai" when x is outside 0..1. The
// statistics know no console; the caller makes a pause of it. Never empty; what it
// throws passes through.
using BadArgumentHandler = std::function<void(std::string_view)>;

// Returns I_x(a, b), the regularised incomplete beta function, for a, b > 0.
//
//   x     0..1, both included: 0 gives 0, 1 gives 1
//
// An x below (a + 1) / (a + b + 2) is calculated directly; from that bound on (the
// bound itself and NaN included) the result is 1 - I_(1-x)(b, a).
// An x outside 0..1 is reported to `on_bad_argument`; the calculation then goes on with
// it, and the result is NaN. A NaN x gives NaN without a call.
// Source     docs/variance-test.md, "The arithmetic"; single precision, with the 32-bit
//            logarithm and exponential of the machine's library.
float betai(float a, float b, float x, const BadArgumentHandler& on_bad_argument);

}  // namespace veldmark

#endif  // VELDMARK_STATS_BETAI_H_
