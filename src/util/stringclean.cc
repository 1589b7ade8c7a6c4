#include "util/stringclean.h"

#include <algorithm>
#include <cstddef>

namespace veldmark {
namespace {

// Removes each blank once, from left to right, by moving the rest of the text one
// position to the left. The character that moves in is not tested again, so that two
// neighbouring blanks take two calls.
void close_blanks_once(std::string& text, std::size_t n) {
  const auto end = text.begin() + static_cast<std::ptrdiff_t>(n);
  for (auto blank = std::find(text.begin(), end, ' '); blank != end;
       blank = std::find(blank + 1, end, ' ')) {
    std::copy(blank + 1, end, blank);
  }
}

bool has_blank_before_text(const std::string& text, std::size_t n) {
  for (std::size_t i = 0; i + 1 < n; ++i) {
    if (text[i] == ' ' && text[i + 1] != ' ') {
      return true;
    }
  }
  return false;
}

}  // namespace

void stringclean(std::string& text, std::int32_t n) {
  const auto length = static_cast<std::size_t>(std::max(n, 0));
  do {
    close_blanks_once(text, length);
  } while (has_blank_before_text(text, length));
}

}  // namespace veldmark
