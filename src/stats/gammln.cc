#include "stats/gammln.h"

#include <array>
#include <cmath>

#include "stats/single_precision.h"

namespace veldmark {
namespace {

// Each is the shortest decimal of its 64-bit real; the tests hold the bits.
constexpr double kSeriesStart = 1.000000000190015;
constexpr double kRootOfTwoPi = 2.5066282746310007;
constexpr std::array<double, 6> kCoefficients = {
    76.18009172947146,  -86.50532032941678,   24.01409824083091,
    -1.231739572450155, 0.001208650973866179, -5.395239384953e-06};

}  // namespace

float gammln(float xx) {
  const double x = xx;
  const double shifted = x + 5.5;
  const double leading_part = (x + 0.5) * std::log(shifted) - shifted;

  double series = kSeriesStart;
  double y = x;
  for (const double coefficient : kCoefficients) {
    y += 1.0;
    series += coefficient / y;
  }
  return static_cast<float>(leading_part + std::log(kRootOfTwoPi * series / x));
}

}  // namespace veldmark
