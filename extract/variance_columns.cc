#include "extract/variance_columns.h"

#include <array>
#include <charconv>
#include <cmath>
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

// The shortest text that reads back to the same value; NaN and Inf as R and Python have
// them.
std::string real_text(float value) {
  if (std::isnan(value)) {
    return "NaN";
  }
  if (std::isinf(value)) {
    return value > 0 ? "Inf" : "-Inf";
  }
  constexpr std::size_t kLongest = 32;
  std::array<char, kLongest> digits{};
  const auto result =
      std::to_chars(digits.data(), digits.data() + digits.size(), value);
  return {digits.data(), result.ptr};
}

}  // namespace

std::string variance_columns(std::span<const std::int16_t> series,
                             std::size_t second_period, const VariableEntry& entry) {
  const std::vector<float> first = sample_of(series.first(second_period), entry);
  const std::vector<float> second = sample_of(series.subspan(second_period), entry);
  auto n1 = static_cast<std::int32_t>(first.size());
  auto n2 = static_cast<std::int32_t>(second.size());
  const std::string counts = std::to_string(n1) + "," + std::to_string(n2);
  float f{};
  float prob{};
  // A bad argument leaves prob NaN, which says enough.
  ftest(first, n1, second, n2, f, prob, [](std::string_view /*text*/) {});
  return real_text(f) + "," + real_text(prob) + "," + counts + "," +
         std::to_string(n1) + "," + std::to_string(n2);
}

}  // namespace veldmark::extract
