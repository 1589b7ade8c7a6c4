#include "util/text_field.h"

#include <gtest/gtest.h>

namespace veldmark {
namespace {

TEST(TextField, IsTruncatedOrPaddedToItsWidth) {
  EXPECT_EQ(text_field("abc", 5), "abc  ");
  EXPECT_EQ(text_field("abcdef", 5), "abcde");
  EXPECT_EQ(text_field("", 3), "   ");
  EXPECT_EQ(text_field("abc", 0), "");
}

TEST(WithoutTrailingBlanks, KeepsLeadingBlanksAndTabs) {
  EXPECT_EQ(without_trailing_blanks(" a b  "), " a b");
  EXPECT_EQ(without_trailing_blanks("a\t "), "a\t");
  EXPECT_EQ(without_trailing_blanks("   "), "");
  EXPECT_EQ(without_trailing_blanks(""), "");
}

}  // namespace
}  // namespace veldmark
