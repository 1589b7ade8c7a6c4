#include "stats/betacf.h"

#include <cmath>

#include "stats/single_precision.h"

namespace veldmark {
namespace {

constexpr int kMaxIterations = 100;
constexpr float kTolerance = 3.0e-7F;
constexpr float kMinMagnitude = 1.0e-30F;

// Replaces a denominator close to zero by a small number, which is positive whatever
// the sign of `value`. NaN stays NaN.
float away_from_zero(float value) {
  return std::fabs(value) < kMinMagnitude ? kMinMagnitude : value;
}

}  // namespace

float betacf(float a, float b, float x) {
  const float qab = a + b;
  const float qap = a + 1.0F;
  const float qam = a - 1.0F;
  float c = 1.0F;
  float d = 1.0F / away_from_zero(1.0F - qab * x / qap);
  float h = d;

  for (int iteration = 1; iteration <= kMaxIterations; ++iteration) {
    const auto m = static_cast<float>(iteration);
    const auto m2 = static_cast<float>(2 * iteration);

    const float even = (b - m) * m * x / ((qam + m2) * (a + m2));
    d = away_from_zero(even * d + 1.0F);
    c = away_from_zero(even / c + 1.0F);
    h = 1.0F / d * h * c;

    const float odd = -((qab + m) * (a + m) * x) / ((m2 + qap) * (m2 + a));
    d = away_from_zero(1.0F + odd * (1.0F / d));
    c = away_from_zero(odd / c + 1.0F);
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
