// Closes up the blanks inside a file name that was joined from padded pieces.

#ifndef VELDMARK_UTIL_STRINGCLEAN_H_
#define VELDMARK_UTIL_STRINGCLEAN_H_

#include <cstdint>
#include <string>

namespace veldmark {

// Moves the characters of `text` that are no blanks to its front, in their order.
//
//   text   the field, changed in place; only the blank (code 32) counts as a blank
//   n      how many characters of `text` belong to the field; n <= text.size().
//          With n <= 1 nothing is done.
//
// Kept on purpose: Stringclean.RepeatsALastCharacterThatIsNoBlank. The last character
// is copied, not moved, so the positions freed at the end repeat it ("x y" becomes
// "xyy"). A padded name ends in a blank, and the freed positions are blanks.
void stringclean(std::string& text, std::int32_t n);

}  // namespace veldmark

#endif  // VELDMARK_UTIL_STRINGCLEAN_H_
