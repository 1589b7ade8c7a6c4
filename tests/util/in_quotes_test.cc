#include "util/in_quotes.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
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
  EXPECT_EQ(in_quotes("\xfc"), "'?'");             // another encoding
  EXPECT_EQ(in_quotes("\xc3"), "'?'");             // cut short
  EXPECT_EQ(in_quotes("\xe4\xb8x"), "'??x'");      // cut short
  EXPECT_EQ(in_quotes("\xe4\xb8\xc0"), "'??\?'");  // cut short
  EXPECT_EQ(in_quotes(std::string_view("\u00fc").substr(0, 1)), "'?'");
  EXPECT_EQ(in_quotes("\xc0\xaf\xe0\x80\xaf"), "'????\?'");  // longer than needed
  EXPECT_EQ(in_quotes("\xed\xa0\x80"), "'??\?'");            // half of a pair
  EXPECT_EQ(in_quotes("\xf4\x90\x80\x80\xf8"), "'????\?'");  // beyond the last
}

// Whether a sequence of `length` bytes, its first one no continuation byte, is a
// printable character beyond ASCII: worked out from the code point that its bits spell.
bool is_printable(std::string_view bytes) {
  constexpr std::array<unsigned, 5> kLeast{0, 0, 0x80, 0x800, 0x10000};  // by length
  unsigned code = static_cast<unsigned char>(bytes[0]) & (0xFFU >> (bytes.size() + 1));
  for (const char byte : bytes.substr(1)) {
    if ((static_cast<unsigned char>(byte) & 0xC0U) != 0x80) {
      return false;
    }
    code = code << 6U | (static_cast<unsigned char>(byte) & 0x3FU);
  }
  const bool is_control = code < 0xA0;
  const bool is_surrogate = 0xD800 <= code && code <= 0xDFFF;
  return code >= kLeast.at(bytes.size()) && code <= 0x10FFFF && !is_control &&
         !is_surrogate;
}

TEST(InQuotes, EveryPairOfFirstBytesIsTakenAsUtf8SaysIt) {
  for (unsigned first = 0xC0; first < 0xF8; ++first) {
    const std::size_t length = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    for (unsigned second = 0; second < 256; ++second) {
      std::string bytes{static_cast<char>(first), static_cast<char>(second), '\xBF',
                        '\x80'};
      bytes.resize(length);
      EXPECT_EQ(in_quotes(bytes) == "'" + bytes + "'", is_printable(bytes))
          << std::hex << first << " " << second;
    }
  }
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
