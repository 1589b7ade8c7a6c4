// Formats numbers with a fixed number of decimals.

#ifndef VELDMARK_EXTRACT_DECIMAL_TEXT_H_
#define VELDMARK_EXTRACT_DECIMAL_TEXT_H_

#include <string>

namespace veldmark::extract {

// Returns the finite `value` rounded to `decimals` (0..9) decimals, as "-0.50".
std::string decimal_text(double value, int decimals);

// Returns the finite `value` with at most nine decimals and no trailing zeros: "-78",
// "10.25".
std::string short_decimal_text(double value);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_DECIMAL_TEXT_H_
