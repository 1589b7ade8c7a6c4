#include "util/in_quotes.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace veldmark {
namespace {

TEST(InQuotes, ShowsWhereANameStartsAndEnds) {
  EXPECT_EQ(in_quotes(" my data.dat "), "' my data.dat '");
  EXPECT_EQ(in_quotes(""), "''");
}

TEST(InQuotes, AnEscapeSequenceDoesNotReachTheTerminal) {
  EXPECT_EQ(in_quotes("a\x1b[31mb"), "'a?[31mb'");
  EXPECT_EQ(in_quotes("a\nb\tc\r\x7f"), "'a?b?c?\?'");
}

TEST(InQuotes, ANullCharacterDoesNotTruncate) {
  EXPECT_EQ(in_quotes(std::string_view("60.25\0x", 7)), "'60.25?x'");
}

TEST(InQuotes, LettersOfOtherLanguagesAreShown) {
  EXPECT_EQ(in_quotes("Z\u00fcrich \u0141\u00f3d\u017a \u4e1c\u4eac \U0001F30D"),
            "'Z\u00fcrich \u0141\u00f3d\u017a \u4e1c\u4eac \U0001F30D'");
}

// Each is at the end of a range of first bytes or of second bytes.
TEST(InQuotes, CharactersAtTheEndsOfTheirRangesAreShown) {
  for (const std::string_view pair :
       {" ~", "\u00a0\u00bf", "\u00c0\u07ff", "\u0800\u0fff", "\u1000\ucfff",
        "\ud000\ud7ff", "\ue000\uffff", "\U00010000\U0003ffff", "\U00040000\U000fffff",
        "\U00100000\U0010ffff"}) {
    EXPECT_EQ(in_quotes(pair), "'" + std::string(pair) + "'");
  }
}

TEST(InQuotes, ControlCharactersBeyondAsciiAreNotShown) {
  EXPECT_EQ(in_quotes("\u0080\u009b31m\u009f\u00a0"), "'????31m??\u00a0'");
}

TEST(InQuotes, WhatIsNotUtf8IsNotShown) {
  EXPECT_EQ(in_quotes("\xfc"), "'?'");                       // another encoding
  EXPECT_EQ(in_quotes("\xc3"), "'?'");                       // cut short
  EXPECT_EQ(in_quotes("\xe4\xb8x"), "'??x'");                // cut short
  EXPECT_EQ(in_quotes("\xc0\xaf\xe0\x80\xaf"), "'????\?'");  // longer than needed
  EXPECT_EQ(in_quotes("\xed\xa0\x80"), "'??\?'");            // half of a pair
  EXPECT_EQ(in_quotes("\xf4\x90\x80\x80\xf8"), "'????\?'");  // beyond the last
}

TEST(InQuotes, OnlyTheBeginningOfALongFieldIsShown) {
  EXPECT_EQ(in_quotes("12345678901234567890", kShownOfField), "'12345678901234567890'");
  EXPECT_EQ(in_quotes("123456789012345678901", kShownOfField),
            "'12345678901234567890...'");
  EXPECT_EQ(in_quotes("\u00fc\u00fc\u00fc", 2), "'\u00fc\u00fc...'");
}

TEST(InQuotes, ALongNameIsShownWhole) {
  const std::string name(5000, 'x');
  EXPECT_EQ(in_quotes(name), "'" + name + "'");
}

}  // namespace
}  // namespace veldmark
