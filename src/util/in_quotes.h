// Shows a name or a piece of a file in a message.

#ifndef VELDMARK_UTIL_IN_QUOTES_H_
#define VELDMARK_UTIL_IN_QUOTES_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace veldmark {

// How many characters of a field are shown.
constexpr std::size_t kShownOfField = 20;

// Returns the text between quotes, with a question mark for each byte that a terminal
// doesn't show as a character: control characters and whatever is not UTF-8. A file
// name can hold escape sequences.
//
//   most    characters that are shown; "..." follows where there are more
std::string in_quotes(std::string_view text, std::size_t most = std::string_view::npos);

}  // namespace veldmark

#endif  // VELDMARK_UTIL_IN_QUOTES_H_
