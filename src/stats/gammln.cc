#include "stats/gammln.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>

#include "stats/single_precision.h"

namespace veldmark {
namespace {

constexpr double kSeriesStart = 1.000000000190015;
constexpr double kRootOfTwoPi = 2.5066282746310007;
constexpr std::array<double, 6> kCoefficients = {
    76.18009172947146,  -86.50532032941678,   24.01409824083091,
    -1.231739572450155, 0.001208650973866179, -5.395239384953e-06};

// The decimals above are the shortest that have these bits.
static_assert(std::bit_cast<std::uint64_t>(kSeriesStart) == 0x3FF00000000D0EC7);
static_assert(std::bit_cast<std::uint64_t>(kRootOfTwoPi) == 0x40040D931FF62706);
static_assert(std::bit_cast<std::array<std::uint64_t, 6>>(kCoefficients) ==
              std::array<std::uint64_t, 6>{0x40530B869F76170A, 0xC055A0572B143656,
                                           0x4038039BF13B4CC6, 0xBFF3B5348DCDCC8C,
                                           0x3F53CD7319EC12D8, 0xBED6A1181C0E9888});

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
