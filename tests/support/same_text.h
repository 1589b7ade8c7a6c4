// Compares long texts. EXPECT_EQ would align all their lines, which takes memory
// proportional to the square of their number.

#ifndef VELDMARK_TESTS_SUPPORT_SAME_TEXT_H_
#define VELDMARK_TESTS_SUPPORT_SAME_TEXT_H_

#include <gtest/gtest.h>

#include <string_view>

namespace veldmark::testing {

// Returns success for equal texts; otherwise a failure with the first line that
// differs, its number and character position. Blanks are shown as dots, control
// characters are escaped.
::testing::AssertionResult same_text(std::string_view actual,
                                     std::string_view expected);

}  // namespace veldmark::testing

#endif  // VELDMARK_TESTS_SUPPORT_SAME_TEXT_H_
