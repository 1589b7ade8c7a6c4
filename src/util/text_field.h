// Text fields of fixed width: truncated or padded with blanks.

#ifndef VELDMARK_UTIL_TEXT_FIELD_H_
#define VELDMARK_UTIL_TEXT_FIELD_H_

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace veldmark {

// Returns the first `width` characters of `text`, padded with blanks to `width`.
std::string text_field(std::string_view text, std::size_t width);

// Returns `field` without the blanks at its end. Tabs are not blanks.
std::string_view without_trailing_blanks(std::string_view field);

// A field of `kWidth` characters, all blanks by default.
template <std::size_t kCharacters>
class TextField {
 public:
  static constexpr std::size_t kWidth = kCharacters;

  constexpr TextField() { characters_.fill(' '); }

  // From a string literal; it must fit, which the compiler checks.
  template <std::size_t kSize>
  constexpr TextField(const char (&literal)[kSize])  // NOLINT: implicit on purpose
      : TextField() {
    static_assert(kSize <= kWidth + 1, "the text is longer than its field");
    for (std::size_t i = 0; i + 1 < kSize; ++i) {
      characters_[i] = literal[i];
    }
  }

  // Returns the field that holds the first `kWidth` characters of `text`.
  static constexpr TextField cut(std::string_view text) {
    TextField field;
    text.copy(field.characters_.data(), kWidth);
    return field;
  }

  // Return the whole field, and the field without the blanks at its end. The views are
  // valid as long as the field exists.
  [[nodiscard]] constexpr std::string_view view() const {
    return {characters_.data(), kWidth};
  }
  [[nodiscard]] std::string_view trimmed() const {
    return without_trailing_blanks(view());
  }

 private:
  std::array<char, kWidth> characters_{};
};

}  // namespace veldmark

#endif  // VELDMARK_UTIL_TEXT_FIELD_H_
