#include "stats/betacf.h"

#include <cmath>

#include "stats/single_precision.h"

namespace veldmark {
namespace {

constexpr int kMostSteps = 100;
constexpr float kTolerance = 3.0e-7F;
constexpr float kSmallestMagnitude = 1.0e-30F;

// Keeps a denominator off zero. The substitute is positive whatever the sign of
// `value`; NaN passes unchanged.
float kept_off_zero(float value) {
  return std::fabs(value) < kSmallestMagnitude ? kSmallestMagnitude : value;
}

}  // namespace

float betacf(float a, float b, float x) {
  const float qab = a + b;
  const float qap = a + 1.0F;
  const float qam = a - 1.0F;
  float c = 1.0F;
  float d = 1.0F / kept_off_zero(1.0F - qab * x / qap);
  float h = d;

  for (int step = 1; step <= kMostSteps; ++step) {
    const auto m = static_cast<float>(step);
    const auto m2 = static_cast<float>(2 * step);

    const float even = (b - m) * m * x / ((qam + m2) * (a + m2));
    d = kept_off_zero(even * d + 1.0F);
    c = kept_off_zero(even / c + 1.0F);
    h = 1.0F / d * h * c;

    const float odd = -((qab + m) * (a + m) * x) / ((m2 + qap) * (m2 + a));
    d = kept_off_zero(1.0F + odd * (1.0F / d));
    c = kept_off_zero(odd / c + 1.0F);
    d = 1.0F / d;
    const float change = d * c;
    h = change * h;
    if (std::fabs(change - 1.0F) < kTolerance) {
      break;
    }
  }
  return h;
}

}  // namespace veldmark
