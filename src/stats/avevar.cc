#include "stats/avevar.h"

#include <cstddef>

#include "stats/single_precision.h"

namespace veldmark {

void avevar(std::span<const float> data, std::int32_t n, float& ave, float& var) {
  const std::span<const float> sample = data.first(static_cast<std::size_t>(n));
  const auto count = static_cast<float>(n);

  float sum = 0.0F;
  for (const float value : sample) {
    sum += value;
  }
  ave = sum / count;

  float sum_of_deviations = 0.0F;
  float sum_of_squares = 0.0F;
  for (const float value : sample) {
    const float deviation = value - ave;
    sum_of_deviations += deviation;
    sum_of_squares += deviation * deviation;
  }
  var = (sum_of_squares - sum_of_deviations * sum_of_deviations / count) /
        static_cast<float>(n - 1);
}

}  // namespace veldmark
