#include "output/value_text.h"

#include <cstdlib>
#include <limits>

namespace veldmark {
namespace {

constexpr std::size_t kValueCount =
    std::size_t{std::numeric_limits<std::uint16_t>::max()} + 1;

}  // namespace

ValueText::ValueText() : texts_(kValueCount) {
  for (std::int32_t value = std::numeric_limits<std::int16_t>::min();
       value <= std::numeric_limits<std::int16_t>::max(); ++value) {
    Text& text = texts_[static_cast<std::uint16_t>(value)];
    text.fill(' ');
    std::size_t position = kWidth;
    std::int32_t rest = std::abs(value);
    do {
      text[--position] = static_cast<char>('0' + rest % 10);
      rest /= 10;
    } while (rest > 0);
    if (value < 0) {
      text[--position] = '-';
    }
  }
}

}  // namespace veldmark
