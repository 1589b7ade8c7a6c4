// Formats numbers with a fixed number of decimals.

#ifndef VELDMARK_EXTRACT_DECIMAL_TEXT_H_
#define VELDMARK_EXTRACT_DECIMAL_TEXT_H_

#include <string>

namespace veldmark::extract {

// Returns `value` rounded to `decimals` (0..9) decimals, as "-0.50". Requires
// |value| < 1e15.
std::string decimal_text(double value, int decimals);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_DECIMAL_TEXT_H_
