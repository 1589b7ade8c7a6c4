// Text fields of fixed width: cut at their width, padded with blanks.

#ifndef VELDMARK_UTIL_TEXT_FIELD_H_
#define VELDMARK_UTIL_TEXT_FIELD_H_

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace veldmark {

// Returns the first `width` characters of `text`, padded with blanks to `width`.
std::string text_field(std::string_view text, std::size_t width);

// Returns `field` without the blanks at its end; other characters, tabs too, stay.
std::string_view without_trailing_blanks(std::string_view field);

// A field of `kWidth` characters; a fresh one is blank.
template <std::size_t kCharacters>
class TextField {
 public:
  static constexpr std::size_t kWidth = kCharacters;

  constexpr TextField() { characters_.fill(' '); }

  // From a literal, which must fit.
  template <std::size_t kSize>
  constexpr TextField(const char (&literal)[kSize])  // NOLINT: a text like any other
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

  // The whole field, and without the blanks at its end. Valid as long as the field.
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
