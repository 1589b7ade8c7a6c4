#include "stats/betai.h"

#include <cmath>

#include "stats/betacf.h"
#include "stats/gammln.h"
#include "stats/single_precision.h"

namespace veldmark {
namespace {

// Returns x^a * (1 - x)^b / B(a, b), the factor before the continued fraction.
float prefactor(float a, float b, float x) {
  if (x == 0.0F || x == 1.0F) {
    return 0.0F;
  }
  const float minus_log_of_beta = gammln(a + b) - gammln(a) - gammln(b);
  return std::exp(b * std::log(1.0F - x) + (minus_log_of_beta + a * std::log(x)));
}

}  // namespace

float betai(float a, float b, float x, const BadArgumentHandler& on_bad_argument) {
  if (x < 0.0F || x > 1.0F) {
    on_bad_argument("bad argument x in betai");
  }

  const float bt = prefactor(a, b, x);
  if (x < (a + 1.0F) / (a + b + 2.0F)) {
    return bt * betacf(a, b, x) / a;
  }
  return 1.0F - bt * betacf(b, a, 1.0F - x) / b;
}

}  // namespace veldmark
