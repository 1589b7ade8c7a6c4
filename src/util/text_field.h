// Text fields of fixed width: cut at their width, padded with blanks.

#ifndef VELDMARK_UTIL_TEXT_FIELD_H_
#define VELDMARK_UTIL_TEXT_FIELD_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace veldmark {

// Gives the first `width` characters of `text`, padded with blanks to `width`.
std::string text_field(std::string_view text, std::size_t width);

// Gives `field` without the blanks at its end; other characters, tabs too, stay.
std::string_view without_trailing_blanks(std::string_view field);

}  // namespace veldmark

#endif  // VELDMARK_UTIL_TEXT_FIELD_H_
