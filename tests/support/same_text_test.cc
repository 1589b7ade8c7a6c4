#include "support/same_text.h"

#include <gtest/gtest.h>

#include <string>

namespace veldmark::testing {
namespace {

TEST(SameText, IsEqualToTheLastByte) {
  EXPECT_TRUE(same_text("", ""));
  EXPECT_TRUE(same_text("one\ntwo\n", "one\ntwo\n"));
  EXPECT_FALSE(same_text("one\ntwo", "one\ntwo\n"));
  EXPECT_FALSE(same_text("one\ntwo \n", "one\ntwo\n"));
}

TEST(SameText, NamesTheFirstLineThatDiffers) {
  EXPECT_STREQ(same_text("one\nt o\r\n", "one\ntwo\n").message(),
               "differs in line 2, column 2\nexpected two\\n\n     got t·o\\x0d\\n");
  EXPECT_STREQ(same_text("one\n", "one\ntwo\n").message(),
               "differs in line 2, column 1\nexpected two\\n\n     got (nothing)");
}

TEST(SameText, ShowsOfALongLineWhatIsAboutTheDifference) {
  const std::string line(100'000, 'x');
  const std::string message = same_text(line + "a", line + "b").message();
  EXPECT_LT(message.size(), 600U);
  EXPECT_NE(message.find("column 100001"), std::string::npos);
}

}  // namespace
}  // namespace veldmark::testing
