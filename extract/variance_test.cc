#include "extract/variance_test.h"

#include <string_view>
#include <vector>

#include "stats/ftest.h"

namespace veldmark::extract {
namespace {

std::vector<float> sample_of(std::span<const std::int16_t> series,
                             const VariableEntry& entry) {
  const float scale = 1.0F / static_cast<float>(entry.stored_per_unit);
  std::vector<float> sample;
  for (const std::int16_t value : series) {
    if (value != entry.MissingCode) {
      sample.push_back(static_cast<float>(value) * scale);
    }
  }
  return sample;
}

}  // namespace

VarianceResult test_variance(std::span<const std::int16_t> series,
                             std::size_t second_period, const VariableEntry& entry) {
  const std::vector<float> first = sample_of(series.first(second_period), entry);
  const std::vector<float> second = sample_of(series.subspan(second_period), entry);
  VarianceResult result;
  result.n1 = result.adjusted_n1 = static_cast<std::int32_t>(first.size());
  result.n2 = result.adjusted_n2 = static_cast<std::int32_t>(second.size());
  // A bad argument leaves the probability NaN; its notice is not needed.
  ftest(first, result.adjusted_n1, second, result.adjusted_n2, result.f,
        result.probability, [](std::string_view /*text*/) {});
  return result;
}

}  // namespace veldmark::extract
