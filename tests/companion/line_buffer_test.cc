#include "companion/line_buffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace veldmark::companion {
namespace {

// Reads all lines of a text in blocks of `piece` bytes. Each line is followed by "|"
// for a newline, "~" for the end of the file or "!" if it is too long.
std::string lines_of(const std::string& text, std::size_t piece,
                     std::size_t longest = 8) {
  std::size_t place = 0;
  LineBuffer lines(
      [&](char* buffer, std::size_t size) {
        const std::size_t count = std::min({size, piece, text.size() - place});
        std::copy_n(text.data() + place, count, buffer);
        place += count;
        return count;
      },
      longest);
  std::string all;
  while (const auto line = lines.next()) {
    all += line->text;
    if (line->end == LineBuffer::End::kTooLong) return all + "!";
    all += line->end == LineBuffer::End::kLineEnd ? "|" : "~";
  }
  return all;
}

TEST(LineBuffer, LinesAreTheSameWhereverTheyAreCut) {
  for (std::size_t piece = 1; piece <= 12; ++piece) {
    EXPECT_EQ(lines_of("one\n\ntwo\r\n\r\nthree\nx", piece), "one||two||three|x~");
  }
}

TEST(LineBuffer, ANewlineAtTheEndOfTheFileBeginsNoLine) {
  EXPECT_EQ(lines_of("one\n", 3), "one|");
  EXPECT_EQ(lines_of("", 3), "");
}

TEST(LineBuffer, OnlyOneCarriageReturnBelongsToTheNewline) {
  EXPECT_EQ(lines_of("a\rb\r\r\n", 2), "a\rb\r|");
  EXPECT_EQ(lines_of("a\r", 2), "a~");
}

TEST(LineBuffer, ALineMayFillTheBufferTogetherWithItsNewline) {
  EXPECT_EQ(lines_of("1234567\nx\n", 5), "1234567|x|");
  EXPECT_EQ(lines_of("12345678\nx\n", 5), "12345678!");
  EXPECT_EQ(lines_of("1234567", 5), "1234567~");
}

TEST(LineBuffer, EveryLineIsPadded) {
  std::string text;
  for (int i = 0; i < 50; ++i) text += "12345\n";
  std::size_t place = 0;
  LineBuffer lines(
      [&](char* buffer, std::size_t size) {
        const std::size_t count = std::min(size, text.size() - place);
        std::copy_n(text.data() + place, count, buffer);
        place += count;
        return count;
      },
      8);
  // Under the address sanitizer this proves that the padding is readable.
  unsigned sum = 0;
  while (const auto line = lines.next()) {
    for (std::size_t i = 0; i < kLinePadding; ++i) {
      sum += static_cast<unsigned char>(*(line->text.data() - 1 - i));
      sum += static_cast<unsigned char>(line->text.data()[line->text.size() + i]);
    }
  }
  EXPECT_GT(sum, 0U);
}

}  // namespace
}  // namespace veldmark::companion
