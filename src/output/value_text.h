// Values as text in six columns, ready-made: the hot loop of writing.

#ifndef VELDMARK_OUTPUT_VALUE_TEXT_H_
#define VELDMARK_OUTPUT_VALUE_TEXT_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace veldmark {

// The texts of all 65,536 values, right-aligned in six columns; no value needs more.
class ValueText {
 public:
  ValueText();

  // A text is copied as eight characters, of which the last two are to be overwritten.
  static constexpr std::size_t kWidth = 6;
  static constexpr std::size_t kCopied = 8;

  // Writes `value` at `out`, which must have space for kCopied characters. Returns the
  // end of its six columns.
  char* write(std::int16_t value, char* out) const {
    const Text& text = texts_[static_cast<std::uint16_t>(value)];
    std::memcpy(out, text.data(), kCopied);
    return out + kWidth;
  }

 private:
  using Text = std::array<char, kCopied>;

  std::vector<Text> texts_;  // by the value modulo 2^16
};

}  // namespace veldmark

#endif  // VELDMARK_OUTPUT_VALUE_TEXT_H_
