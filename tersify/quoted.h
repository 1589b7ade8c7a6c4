// Shows a piece of a file in a message.

#ifndef VELDMARK_TERSIFY_QUOTED_H_
#define VELDMARK_TERSIFY_QUOTED_H_

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace veldmark::tersify {

// The text in quotes; at most its first 20 characters, and a question mark for what is
// no printable ASCII character, so that a binary file cannot upset a terminal.
inline std::string quoted(std::string_view text) {
  constexpr std::size_t kLongest = 20;
  std::string shown(text.substr(0, kLongest));
  std::replace_if(
      shown.begin(), shown.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
  return "'" + shown + (text.size() > kLongest ? "...'" : "'");
}

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_QUOTED_H_
