#include "extract/value_texts.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <string_view>

namespace veldmark::extract {

namespace {

constexpr std::size_t kMaxCharacters = 16;

// Writes a decimal number right-aligned into `memory`. Returns its text.
std::string_view write_decimal(std::int32_t value, std::int32_t decimals,
                               std::array<char, kMaxCharacters>& memory) {
  std::size_t begin = memory.size();
  std::int64_t rest = std::abs(std::int64_t{value});
  for (std::int32_t digits = 0; rest > 0 || digits <= decimals; ++digits) {
    if (digits == decimals && decimals > 0) {
      memory[--begin] = '.';
    }
    memory[--begin] = static_cast<char>('0' + rest % 10);
    rest /= 10;
  }
  if (value < 0) {
    memory[--begin] = '-';
  }
  return {&memory[begin], memory.size() - begin};
}

}  // namespace

std::string exact_decimal(std::int32_t value, std::int32_t decimals) {
  std::array<char, kMaxCharacters> memory{};
  return std::string(write_decimal(value, decimals, memory));
}

ValueTexts::ValueTexts(std::int32_t decimals, std::int32_t MissingCode)
    : texts_(std::size_t{std::numeric_limits<std::uint16_t>::max()} + 1) {
  constexpr std::int32_t kLowest = std::numeric_limits<std::int16_t>::min();
  constexpr std::int32_t kHighest = std::numeric_limits<std::int16_t>::max();
  std::array<char, kMaxCharacters> memory{};
  for (std::int32_t value = kLowest; value <= kHighest; ++value) {
    const std::string_view text =
        value == MissingCode ? "" : write_decimal(value, decimals, memory);
    Text& entry = texts_[static_cast<std::uint16_t>(value)];
    std::copy(text.begin(), text.end(), entry.begin());
    entry.back() = static_cast<char>(text.size());
  }
}

}  // namespace veldmark::extract
