#include "catalogue/line_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace veldmark {
namespace {

constexpr std::size_t kLongest = 10;

// Returns a reader of `text`, which must outlive it, that gets at most `piece`
// characters at a time.
LineReader reader_of(const std::string& text, std::size_t piece) {
  return {
      [&text, piece, begin = std::size_t{0}](char* buffer, std::size_t size) mutable {
        const std::size_t count = text.copy(buffer, std::min(size, piece), begin);
        begin += count;
        return count;
      },
      kLongest};
}

// Returns all lines; a line without a newline is marked with ~.
std::vector<std::string> all_lines(const std::string& text, std::size_t piece) {
  LineReader reader = reader_of(text, piece);
  std::vector<std::string> lines;
  while (const auto line = reader.next()) {
    lines.push_back(std::string(line->text) + (line->has_newline ? "" : "~"));
  }
  return lines;
}

using Lines = std::vector<std::string>;

TEST(LineReader, ReturnsLinesWithoutNewlines) {
  const std::string text = "one\n\ntwo\r\n\r\nthree";
  for (const std::size_t piece : {1, 2, 3, 5, 100}) {
    EXPECT_EQ(all_lines(text, piece), (Lines{"one", "", "two", "", "three~"})) << piece;
  }
}

TEST(LineReader, KeepsCarriageReturnsInsideALine) {
  EXPECT_EQ(all_lines("a\rb\r\r\n", 100), (Lines{"a\rb\r"}));
}

TEST(LineReader, RemovesACarriageReturnAtTheEndOfTheFile) {
  EXPECT_EQ(all_lines("abc\r", 100), (Lines{"abc~"}));
}

TEST(LineReader, ReadsAQuarterOfAMegabyteAtATime) {
  std::vector<std::size_t> asked;
  LineReader reader(
      [&](char* buffer, std::size_t size) {
        asked.push_back(size);
        *buffer = '\n';
        return std::size_t{1};
      },
      kLongest);
  EXPECT_TRUE(reader.next());
  EXPECT_TRUE(reader.skip());
  EXPECT_EQ(asked, (std::vector<std::size_t>{256 * 1024, 256 * 1024}));
}

TEST(LineReader, TruncatesLongLines) {
  for (const std::size_t piece : {1, 7, 100}) {
    EXPECT_EQ(
        all_lines("0123456789\n0123456789\r\n0123456789X\n0123456789XYZ\r\n", piece),
        (Lines{"0123456789", "0123456789", "0123456789", "0123456789"}));
  }
}

TEST(LineReader, EndsAtTheEndOfTheFile) {
  EXPECT_EQ(all_lines("", 100), Lines{});
  EXPECT_EQ(all_lines("\n", 100), Lines{""});
}

TEST(LineReader, SkipsLinesOfAnyLength) {
  const std::string text = "a\n" + std::string(100, 'b') + "\n\nlast";
  for (const std::size_t piece : {1, 2, 3, 7, 1000}) {
    LineReader reader = reader_of(text, piece);
    EXPECT_TRUE(reader.skip());
    EXPECT_TRUE(reader.skip());
    EXPECT_TRUE(reader.skip());
    EXPECT_EQ(reader.next()->text, "last");
    EXPECT_FALSE(reader.skip());
    EXPECT_FALSE(reader.next().has_value());
  }
}

TEST(LineReader, CountsAPartialLastLineAsALine) {
  const std::string text = "a\nb";
  LineReader reader = reader_of(text, 100);
  EXPECT_TRUE(reader.skip());
  EXPECT_TRUE(reader.skip());
  EXPECT_FALSE(reader.skip());
}

// Returns the same lines, using string operations only.
Lines plainly_cut(std::string text) {
  Lines lines;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    std::string line = text.substr(0, end);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(line.substr(0, kLongest) + (end == std::string::npos ? "~" : ""));
    text = end == std::string::npos ? "" : text.substr(end + 1);
  }
  return lines;
}

TEST(LineReader, AgreesWithAPlainDefinitionOnRandomTexts) {
  std::mt19937 random(1);
  for (int i = 0; i < 20000; ++i) {
    std::string text;
    const std::size_t length = random() % 40;
    while (text.size() < length) text += "ab\n\r"[random() % 4];
    const std::size_t piece = 1 + random() % 12;
    ASSERT_EQ(all_lines(text, piece), plainly_cut(text));
  }
}

}  // namespace
}  // namespace veldmark
