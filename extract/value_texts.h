// Formats stored integers as decimal numbers. No floating point is used, so the texts
// are exact.

#ifndef VELDMARK_EXTRACT_VALUE_TEXTS_H_
#define VELDMARK_EXTRACT_VALUE_TEXTS_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace veldmark::extract {

// Returns `value` divided by 10^decimals: with 1 decimal 253 is "25.3" and -5 is
// "-0.5"; with none it is the integer. 0 <= decimals <= 2.
std::string exact_decimal(std::int32_t value, std::int32_t decimals);

// The texts of all 16-bit values, precomputed for the hot loop. The missing code has an
// empty text.
class ValueTexts {
 public:
  ValueTexts(std::int32_t decimals, std::int32_t MissingCode);

  // A text has at most kCopySize - 1 characters; write copies kCopySize.
  static constexpr std::size_t kCopySize = 8;

  // Writes `value` at `out`, where kCopySize characters may be overwritten. Returns the
  // position after the text.
  char* write(std::int16_t value, char* out) const {
    const Text& text = texts_[static_cast<std::uint16_t>(value)];
    std::memcpy(out, text.data(), kCopySize);
    return out + text.back();
  }

 private:
  // The characters of a text; the last element is their number.
  using Text = std::array<char, kCopySize>;

  std::vector<Text> texts_;  // index: the value as uint16_t
};

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_VALUE_TEXTS_H_
