// Formats values as text by table lookup: the hot loop of writing.

#ifndef VELDMARK_OUTPUT_VALUE_TEXT_H_
#define VELDMARK_OUTPUT_VALUE_TEXT_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace veldmark {

// A table of the texts of all 65,536 values, each right-aligned in six characters,
// which is enough for all of them.
class ValueText {
 public:
  ValueText();

  // A text is six characters wide; eight are copied, because that is a single store.
  // The caller overwrites the last two.
  static constexpr std::size_t kWidth = 6;
  static constexpr std::size_t kCopySize = 8;

  // Writes `value` at `out`. Requires space for kCopySize characters. Returns the end
  // of the text, `out` + kWidth.
  char* write(std::int16_t value, char* out) const {
    const Text& text = texts_[static_cast<std::uint16_t>(value)];
    std::memcpy(out, text.data(), kCopySize);
    return out + kWidth;
  }

 private:
  using Text = std::array<char, kCopySize>;

  std::vector<Text> texts_;  // indexed by the value modulo 2^16
};

}  // namespace veldmark

#endif  // VELDMARK_OUTPUT_VALUE_TEXT_H_
