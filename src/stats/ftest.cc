#include "stats/ftest.h"

#include <algorithm>
#include <cstddef>

#include "stats/avevar.h"
#include "stats/single_precision.h"

namespace veldmark {
namespace {

constexpr std::int32_t kMinCount = 2;

// Adds the fourth powers of the deviations of the first `n` values from `ave` to `sum`.
// Both samples are added to one sum; two sums would round differently.
void add_fourth_powers(std::span<const float> data, std::int32_t n, float ave,
                       float& sum) {
  for (const float value : data.first(static_cast<std::size_t>(n))) {
    const float deviation = value - ave;
    sum += deviation * deviation * deviation * deviation;
  }
}

}  // namespace

std::int32_t adjusted_count(float n, float kurtosis) {
  const float quotient = 2.0F * n / (kurtosis - (n - 3.0F) / (n - 1.0F));
  return std::max(truncated_to_int32(quotient), kMinCount);
}

void ftest(std::span<const float> data1, std::int32_t& n1, std::span<const float> data2,
           std::int32_t& n2, float& f, float& prob,
           const BadArgumentHandler& on_bad_argument) {
  float ave1{};
  float var1{};
  avevar(data1, n1, ave1, var1);
  float ave2{};
  float var2{};
  avevar(data2, n2, ave2, var2);

  float fourth_powers = 0.0F;
  add_fourth_powers(data1, n1, ave1, fourth_powers);
  add_fourth_powers(data2, n2, ave2, fourth_powers);

  // The pooled variance is divided by the number of all values, not by that less two.
  const auto count1 = static_cast<float>(n1);
  const auto count2 = static_cast<float>(n2);
  const float all = count2 + count1;
  const float pooled = ((count2 - 1.0F) * var2 + (count1 - 1.0F) * var1) / all;
  const float kurtosis = fourth_powers / all / (pooled * pooled);
  n1 = adjusted_count(count1, kurtosis);
  n2 = adjusted_count(count2, kurtosis);

  // The larger variance is the numerator; the second if they are equal or NaN.
  const bool first_is_larger = var1 > var2;
  f = first_is_larger ? var1 / var2 : var2 / var1;
  const auto df1 = static_cast<float>((first_is_larger ? n1 : n2) - 1);
  const auto df2 = static_cast<float>((first_is_larger ? n2 : n1) - 1);

  const float one_sided =
      betai(0.5F * df2, df1 * 0.5F, df2 / (df1 * f + df2), on_bad_argument);
  prob = 2.0F * one_sided;
  if (prob > 1.0F) {
    prob = 2.0F - prob;
  }
}

}  // namespace veldmark
