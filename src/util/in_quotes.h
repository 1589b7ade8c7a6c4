// Quotes a file name, or text from a file, for use in a message.

#ifndef VELDMARK_UTIL_IN_QUOTES_H_
#define VELDMARK_UTIL_IN_QUOTES_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace veldmark {

// The usual limit for text from a file, in characters.
constexpr std::size_t kShownOfField = 20;

// Returns `text` between quotes. Control characters and invalid UTF-8 are replaced by
// question marks, one per byte: a file name can hold escape sequences.
//
//   max_characters    how many characters are shown; "..." stands for the rest
std::string in_quotes(std::string_view text,
                      std::size_t max_characters = std::string_view::npos);

}  // namespace veldmark

#endif  // VELDMARK_UTIL_IN_QUOTES_H_
