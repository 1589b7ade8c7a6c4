#include "util/text_field.h"

namespace veldmark {

std::string text_field(std::string_view text, std::size_t width) {
  std::string field(text.substr(0, width));
  field.resize(width, ' ');
  return field;
}

std::string_view without_trailing_blanks(std::string_view field) {
  // A field of blanks only: npos + 1 is 0, which leaves nothing.
  return field.substr(0, field.find_last_not_of(' ') + 1);
}

}  // namespace veldmark
