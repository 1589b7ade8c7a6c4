// Removes the blanks inside a file name that was joined from padded fields.

#ifndef VELDMARK_UTIL_STRINGCLEAN_H_
#define VELDMARK_UTIL_STRINGCLEAN_H_

#include <cstdint>
#include <string>

namespace veldmark {

// Moves the non-blank characters of `text` to its start, keeping their order.
//
//   text   changed in place; only the space (code 32) counts as a blank
//   n      how many characters of `text` are looked at; nothing changes if n <= 1.
//          Requires n <= text.size().
//
// Kept on purpose: Stringclean.RepeatsALastCharacterThatIsNoBlank. The last character
// is copied, not moved, so the positions freed at the end repeat it ("x y" becomes
// "xyy"). A padded name ends in a blank, so there the freed positions are blanks.
void stringclean(std::string& text, std::int32_t n);

}  // namespace veldmark

#endif  // VELDMARK_UTIL_STRINGCLEAN_H_
