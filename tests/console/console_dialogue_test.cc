#include "console/console_dialogue.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <ios>
#include <optional>
#include <ostream>
#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

#include "support/report_of.h"

namespace veldmark {
namespace {

using testing::report_of;

// A console with typed input, which records the flushed output and the commands.
class TestConsole {
 public:
  explicit TestConsole(const std::string& typed) : input_(typed) {}

  ConsoleDialogue& dialogue() { return dialogue_; }
  [[nodiscard]] std::string written() const { return output_.str(); }
  [[nodiscard]] const std::vector<std::string>& commands() const { return commands_; }

 private:
  std::istringstream input_;
  std::ostringstream output_;
  std::vector<std::string> commands_;
  ConsoleDialogue dialogue_{input_, output_, [this](const std::string& command) {
                              commands_.push_back(output_.str() + "$ " + command);
                            }};
};

const std::string kPastEnd =
    "Run-time error:\nAttempt to read past end of file\n? READ(UNIT=5,...\n";
const std::string kBadNumber =
    "Run-time error:\nIllegal character in numeric input\n? READ(UNIT=5,...\n";

TEST(ConsoleDialogue, WritesTextsAsTheyAre) {
  TestConsole console("");
  console.dialogue().blank_line();
  console.dialogue().write_line("   three");
  console.dialogue().write_line("none ");
  console.dialogue().prompt(" ask ==> ");
  EXPECT_EQ(console.written(), "\n   three\nnone \n ask ==> ");
}

TEST(ConsoleDialogue, PausesForALine) {
  TestConsole console("anything\n7\n");
  console.dialogue().pause(" Hit");
  EXPECT_EQ(console.written(), " Hit\n");
  EXPECT_EQ(console.dialogue().read_fixed_integer(2), 7);
}

TEST(ConsoleDialogue, RunsCommandsAfterWhatWasWritten) {
  TestConsole console("");
  console.dialogue().write_line("before");
  console.dialogue().run_shell_command("clear");
  EXPECT_EQ(console.commands(), std::vector<std::string>{"before\n$ clear"});
}

// Buffers output until it is flushed, and counts the flushes.
class CountingBuffer : public std::stringbuf {
 public:
  [[nodiscard]] int flushes() const { return flushes_; }

 protected:
  int sync() override {
    ++flushes_;
    return 0;
  }

 private:
  int flushes_ = 0;
};

TEST(ConsoleDialogue, FlushesBeforeACommand) {
  std::istringstream input;
  CountingBuffer buffer;
  std::ostream output(&buffer);
  int flushes_before_command = -1;
  ConsoleDialogue console(input, output, [&](const std::string& /*command*/) {
    flushes_before_command = buffer.flushes();
  });
  console.write_line("first");
  EXPECT_EQ(buffer.flushes(), 0);
  console.run_shell_command("clear");
  EXPECT_EQ(flushes_before_command, 1);
}

TEST(ConsoleDialogue, ReadsIntegersFromTheFirstCharacters) {
  TestConsole console("123\n 4\n\n-56\n1x\n");
  EXPECT_EQ(console.dialogue().read_fixed_integer(2), 12);
  EXPECT_EQ(console.dialogue().read_fixed_integer(2), 4);
  EXPECT_EQ(console.dialogue().read_fixed_integer(2), 0);
  EXPECT_EQ(console.dialogue().read_fixed_integer(2), -5);
  EXPECT_EQ(report_of([&] { console.dialogue().read_fixed_integer(2); }), kBadNumber);
}

TEST(ConsoleDialogue, TriesToReadIntegers) {
  TestConsole console("19x1\n1901 and more\n");
  EXPECT_EQ(console.dialogue().try_read_fixed_integer(4, "no year"), std::nullopt);
  EXPECT_EQ(console.dialogue().try_read_fixed_integer(4, "no year"), 1901);
  EXPECT_EQ(report_of([&] { console.dialogue().try_read_fixed_integer(4, "no year"); }),
            "Run-time error:\nno year\n? READ(UNIT=5,...\n");
}

TEST(ConsoleDialogue, ReadsTextsOfTheirWidth) {
  TestConsole console("ab\nabcdef\n");
  EXPECT_EQ(console.dialogue().read_text(4), "ab  ");
  EXPECT_EQ(console.dialogue().read_text(4), "abcd");
}

TEST(ConsoleDialogue, SkipsLinesWithoutAValueWhenReadingFreeIntegers) {
  TestConsole console("\n  \n, 5\n 17 18\n1x\n");
  EXPECT_EQ(console.dialogue().read_free_integer(), 17);
  EXPECT_EQ(report_of([&] { console.dialogue().read_free_integer(); }), kBadNumber);
  EXPECT_EQ(report_of([&] { console.dialogue().read_free_integer(); }), kPastEnd);
}

TEST(ConsoleDialogue, ReadsLogicalValuesAndCharacters) {
  TestConsole console(" .true\nno\nTRUE\n\n yes\n\n");
  EXPECT_TRUE(console.dialogue().read_logical());
  EXPECT_FALSE(console.dialogue().read_logical());
  EXPECT_TRUE(console.dialogue().read_logical());
  EXPECT_FALSE(console.dialogue().read_logical());
  EXPECT_EQ(console.dialogue().read_free_character(), 'y');
  EXPECT_EQ(console.dialogue().read_free_character(), ' ');
}

TEST(ConsoleDialogue, RemovesACarriageReturnBeforeTheNewline) {
  TestConsole console("ab\r\n\r\n\ra\rb\r\r\nlast\r");
  EXPECT_EQ(console.dialogue().read_text(4), "ab  ");
  EXPECT_EQ(console.dialogue().read_text(4), "    ");
  EXPECT_EQ(console.dialogue().read_text(6), "\ra\rb\r ");
  EXPECT_EQ(console.dialogue().read_text(6), "last  ");
  EXPECT_EQ(report_of([&] { console.dialogue().read_text(4); }), kPastEnd);
}

TEST(ConsoleDialogue, TruncatesVeryLongLines) {
  constexpr std::size_t kKept = 65536;
  TestConsole console(std::string(kKept, 'a') + "bc\nnext\n");
  EXPECT_EQ(console.dialogue().read_text(kKept + 1), std::string(kKept, 'a') + " ");
  EXPECT_EQ(console.dialogue().read_text(4), "next");
}

// An output in which every flush fails, as for a pipe without a reader.
class NoOutput : public std::streambuf {
 protected:
  int sync() override {
    errno = EPIPE;
    return -1;
  }
  int_type overflow(int_type character) override { return character; }
};

TEST(ConsoleDialogue, EndsTheRunIfItCannotBeWritten) {
  NoOutput no_output;
  std::ostream output(&no_output);
  std::istringstream input("1\n");
  ConsoleDialogue console(input, output, [](const std::string&) {});
  console.write_line("held back");
  const std::string expected =
      "Run-time error:\nCannot write file: standard output: Broken pipe\n"
      "? WRITE(UNIT=5,...\n";
  EXPECT_EQ(report_of([&] { console.flush(); }), expected);
  EXPECT_EQ(report_of([&] { console.read_text(1); }), expected);
}

// An input that fails after its first line.
class BrokenInput : public std::streambuf {
 protected:
  int_type underflow() override {
    if (read_) {
      errno = EIO;
      throw std::ios::failure("broken");
    }
    read_ = true;
    setg(text_.data(), text_.data(), text_.data() + text_.size());
    return traits_type::to_int_type(text_.front());
  }

 private:
  std::string text_ = "one\ntw";
  bool read_ = false;
};

TEST(ConsoleDialogue, EndsTheRunIfItCannotBeRead) {
  BrokenInput broken_input;
  std::istream input(&broken_input);
  std::ostringstream output;
  ConsoleDialogue console(input, output, [](const std::string&) {});
  EXPECT_EQ(console.read_text(3), "one");
  EXPECT_EQ(report_of([&] { console.read_text(3); }),
            "Run-time error:\nCannot read file: standard input: Input/output error\n"
            "? READ(UNIT=5,...\n");
}

}  // namespace
}  // namespace veldmark
