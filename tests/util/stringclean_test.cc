#include "util/stringclean.h"

#include <gtest/gtest.h>

#include <string>

namespace veldmark {
namespace {

std::string cleaned(std::string text) {
  stringclean(text, static_cast<std::int32_t>(text.size()));
  return text;
}

TEST(Stringclean, RemovesBlanks) {
  EXPECT_EQ(cleaned("ab c "), "abc  ");
  EXPECT_EQ(cleaned("a  b "), "ab   ");
  EXPECT_EQ(cleaned("  abc  "), "abc    ");
}

// Kept on purpose: the last character is copied, not moved.
TEST(Stringclean, RepeatsALastCharacterThatIsNoBlank) {
  EXPECT_EQ(cleaned("ab c"), "abcc");
  EXPECT_EQ(cleaned("x y"), "xyy");
  EXPECT_EQ(cleaned("a b c"), "abccc");
  EXPECT_EQ(cleaned("  a"), "aaa");
  EXPECT_EQ(cleaned(" a"), "aa");
  EXPECT_EQ(cleaned("   ab"), "abbbb");
}

TEST(Stringclean, LeavesBlankTextAndTextWithoutBlanksUnchanged) {
  EXPECT_EQ(cleaned("      "), "      ");
  EXPECT_EQ(cleaned("abc"), "abc");
  EXPECT_EQ(cleaned("abc   "), "abc   ");
  EXPECT_EQ(cleaned("a\tb "), "a\tb ");
}

TEST(Stringclean, DoesNotChangeOneCharacterOrNone) {
  EXPECT_EQ(cleaned(" "), " ");
  EXPECT_EQ(cleaned(""), "");
  std::string text = " a";
  stringclean(text, -1);
  EXPECT_EQ(text, " a");
}

TEST(Stringclean, TouchesOnlyTheFirstNCharacters) {
  std::string text = "a b c d";
  stringclean(text, 4);
  EXPECT_EQ(text, "ab  c d");
}

// Returns the result in one step: the non-blank characters, then copies of the last
// character.
std::string plainly_cleaned(const std::string& text) {
  std::string kept;
  for (const char character : text) {
    if (character != ' ') kept += character;
  }
  if (kept.empty()) return text;
  kept.resize(text.size(), text.back());
  return kept;
}

TEST(Stringclean, AgreesWithAPlainDefinitionOnAllPatternsOfTwelve) {
  for (std::size_t length = 1; length <= 12; ++length) {
    for (unsigned pattern = 0; pattern < (1U << length); ++pattern) {
      std::string text;
      for (std::size_t i = 0; i < length; ++i) {
        const char letter = static_cast<char>('a' + i);
        text += (pattern >> i & 1U) != 0 ? letter : ' ';
      }
      // A single character is not changed, which is also what the plain definition
      // gives.
      ASSERT_EQ(cleaned(text), plainly_cleaned(text)) << '"' << text << '"';
    }
  }
}

}  // namespace
}  // namespace veldmark
