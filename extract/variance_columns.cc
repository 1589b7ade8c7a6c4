#include "extract/variance_columns.h"

#include <array>
#include <charconv>
#include <cmath>

namespace veldmark::extract {
namespace {

// Returns the shortest text that reads back as the same value; NaN and Inf as R and
// Python read them.
std::string real_text(float value) {
  if (std::isnan(value)) {
    return "NaN";
  }
  if (std::isinf(value)) {
    return std::signbit(value) ? "-Inf" : "Inf";
  }
  constexpr std::size_t kBufferSize = 32;
  std::array<char, kBufferSize> digits{};
  const auto result =
      std::to_chars(digits.data(), digits.data() + digits.size(), value);
  return {digits.data(), result.ptr};
}

}  // namespace

std::string variance_columns(const VarianceResult& result) {
  std::string columns = real_text(result.f) + "," + real_text(result.probability);
  for (const std::int32_t count :
       {result.n1, result.n2, result.adjusted_n1, result.adjusted_n2}) {
    columns += "," + std::to_string(count);
  }
  return columns;
}

}  // namespace veldmark::extract
