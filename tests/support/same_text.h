// Comparison of long texts. EXPECT_EQ would align all lines of both on a difference,
// which takes memory by the square of their number.

#ifndef VELDMARK_TESTS_SUPPORT_SAME_TEXT_H_
#define VELDMARK_TESTS_SUPPORT_SAME_TEXT_H_

#include <gtest/gtest.h>

#include <string_view>

namespace veldmark::testing {

// Returns success for equal texts, and otherwise the first line that differs, its
// number and column, with blanks shown as dots and control characters escaped.
::testing::AssertionResult same_text(std::string_view actual,
                                     std::string_view expected);

}  // namespace veldmark::testing

#endif  // VELDMARK_TESTS_SUPPORT_SAME_TEXT_H_
