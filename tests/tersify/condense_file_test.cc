// What condensing leaves on the disk, whatever goes wrong.

#include "tersify/condense_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <string>

#include "companion/line_buffer.h"
#include "raw_text.h"
#include "support/temporary_folder.h"
#include "tersify/condensed_output.h"
#include "util/failure.h"
#include "util/interrupt_watch.h"

namespace veldmark::tersify {
namespace {

using testing::condensed_line;
using testing::numbers;
using testing::raw_line;
using testing::raw_line_with;
using testing::repeated;
using veldmark::testing::file_content;
using veldmark::testing::folder_content;
using veldmark::testing::TemporaryFolder;
using veldmark::testing::write_file;
using Files = std::map<std::string, std::string>;

const std::string kRaw = raw_line(numbers()) + "\n";
const std::string kCondensed = condensed_line(numbers()) + "\n";

using companion::kLongestLine;
using companion::ProgressLine;

Condensed condense(const std::string& name,
                   const FreeSpace& free_space = system_free_space) {
  std::ostringstream nobody;
  const ProgressLine::Screen screen{.stream = nobody};
  return condense_file({name, std::nullopt, free_space, screen});
}

// Condensing "raw" fails with `message` and leaves the folder as it was.
void expect_failure(const std::string& message,
                    const FreeSpace& free_space = system_free_space) {
  const Files before = folder_content();
  try {
    condense("raw", free_space);
    ADD_FAILURE() << "no failure; expected: " << message;
  } catch (const Failure& error) {
    EXPECT_EQ(error.what(), message);
  }
  EXPECT_EQ(folder_content(), before);
}

// `content` fails, both where there was no copy and where there was one.
void expect_content_failure(const std::string& content, const std::string& message) {
  const TemporaryFolder folder;
  write_file("raw", content);
  expect_failure(message);
  write_file("raw.new", "earlier");
  expect_failure(message);
}

TEST(CondenseFile, MakesACopyBesideTheFile) {
  const TemporaryFolder folder;
  write_file("raw", repeated(300, kRaw));
  const Condensed done = condense("raw");
  EXPECT_EQ(folder_content(), (Files{{"raw", repeated(300, kRaw)},
                                     {"raw.new", repeated(300, kCondensed)}}));
  EXPECT_EQ(done.lines, 300);
  EXPECT_EQ(done.size_before, static_cast<std::int64_t>(300 * kRaw.size()));
  EXPECT_EQ(done.size_after, 300 * 3601);
  EXPECT_TRUE(done.last_line_ended);
}

TEST(CondenseFile, TheCopyOfAFileInAnotherFolderIsMadeThere) {
  const TemporaryFolder folder;
  std::filesystem::create_directory("data");
  write_file("data/raw", kRaw);
  condense("data/raw");
  EXPECT_EQ(file_content("data/raw.new"), kCondensed);
  EXPECT_FALSE(std::filesystem::exists("raw.new"));
}

TEST(CondenseFile, ReplacesAnEarlierCopyAndAnAbandonedPart) {
  const TemporaryFolder folder;
  write_file("raw", kRaw);
  write_file("raw.new", "earlier");
  write_file("raw.new.part", "of a run that was killed");
  condense("raw");
  EXPECT_EQ(folder_content(), (Files{{"raw", kRaw}, {"raw.new", kCondensed}}));
}

TEST(CondenseFile, CrLfCountsAsANewline) {
  const TemporaryFolder folder;
  write_file("raw", repeated(3, raw_line(numbers()) + "\r\n"));
  condense("raw");
  EXPECT_EQ(folder_content()["raw.new"], repeated(3, kCondensed));
}

TEST(CondenseFile, TheLastLineMayLackItsNewline) {
  const TemporaryFolder folder;
  write_file("raw", kRaw + raw_line(numbers()));
  const Condensed done = condense("raw");
  EXPECT_EQ(folder_content()["raw.new"], repeated(2, kCondensed));
  EXPECT_EQ(done.lines, 2);
  EXPECT_FALSE(done.last_line_ended);
}

TEST(CondenseFile, AValueOfSixCharactersIsAFault) {
  expect_content_failure(
      kRaw + raw_line_with(7, "123456") + "\n" + kRaw,
      "'raw': line 2, field 7: '123456' needs more than five characters");
}

TEST(CondenseFile, ALetterIsAFault) {
  expect_content_failure(repeated(2000, kRaw) + raw_line_with(720, "12a") + "\n",
                         "'raw': line 2001, field 720: '12a' is not an integer");
}

TEST(CondenseFile, AnEmptyLineIsAFault) {
  expect_content_failure(kRaw + "\n" + kRaw,
                         "'raw': line 2, field 1: the line is empty");
  expect_content_failure(kRaw + "\r\n", "'raw': line 2, field 1: the line is empty");
}

TEST(CondenseFile, TooFewAndTooManyNumbersAreFaults) {
  auto fields = numbers();
  fields.pop_back();
  expect_content_failure(
      kRaw + raw_line(fields) + "\n",
      "'raw': line 2, field 720: the line ends before it; a line holds 720 integers");
  expect_content_failure(raw_line(numbers()) + " 1\n",
                         "'raw': line 1, field 721: '1' is too many; a line holds 720 "
                         "integers");
}

TEST(CondenseFile, AFileThatEndsWithinALineSaysSo) {
  auto fields = numbers();
  fields.resize(300);
  expect_content_failure(kRaw + raw_line(fields),
                         "'raw': line 2, field 301: the line ends before it; a line "
                         "holds 720 integers (the "
                         "file ends in this line)");
}

TEST(CondenseFile, ALineWithoutEndIsAFault) {
  expect_content_failure(
      kRaw + std::string(2 * kLongestLine, ' '),
      "'raw': line 2, field 1: the line is longer than 262144 characters");
}

TEST(CondenseFile, AnEmptyFileIsAFault) {
  expect_content_failure("", "'raw': the file is empty");
}

TEST(CondenseFile, ACondensedFileIsNotCondensedAgain) {
  expect_content_failure(kCondensed + kRaw, "'raw' is condensed already");
  expect_content_failure(repeated(720, "-9999") + "\n", "'raw' is condensed already");
}

TEST(CondenseFile, ADamagedCondensedFileGetsAHint) {
  expect_content_failure("12x45" + repeated(719, "-9999") + "\n",
                         "'raw': line 1, field 1: '12x45-9999-9999-9999...' is not an "
                         "integer (is the file condensed already?)");
}

// Only gzip is read; see gzip_test.cc.
TEST(CondenseFile, OtherCompressedFilesAreRecognised) {
  const auto expect = [](const std::string& content, const std::string& kind) {
    expect_content_failure(content,
                           "'raw' is compressed (" + kind + "); decompress it first");
  };
  expect("PK\x03\x04rest", "zip");
  expect("PK\x05\x06rest", "zip");
  expect("BZh91AY", "bzip2");
  expect(std::string("\xfd"
                     "7zXZ\0\0",
                     7),
         "xz");
}

TEST(CondenseFile, AMissingFileAFolderAndAPipeAreRefused) {
  const TemporaryFolder folder;
  expect_failure("cannot read 'raw': No such file or directory");
  std::filesystem::create_directory("raw");
  expect_failure("cannot read 'raw': Is a directory");
  std::filesystem::remove("raw");
  ASSERT_EQ(::mkfifo("raw", 0600), 0);
  EXPECT_THROW(condense("raw"), Failure);
  EXPECT_FALSE(std::filesystem::exists("raw.new"));
}

TEST(CondenseFile, AnOutputThatIsTheInputIsRefused) {
  const TemporaryFolder folder;
  write_file("raw", kRaw);
  std::filesystem::create_hard_link("raw", "raw.new");
  expect_failure("'raw.new' is the same file as 'raw'; nothing was written");
  std::filesystem::remove("raw.new");
  std::filesystem::create_symlink("raw", "raw.new");
  expect_failure("'raw.new' is the same file as 'raw'; nothing was written");
  std::filesystem::remove("raw.new");
  std::filesystem::create_hard_link("raw", "raw.new.part");
  expect_failure("'raw.new.part' is the same file as 'raw'; nothing was written");
}

TEST(CondenseFile, AnOutputThatIsAFolderIsRefused) {
  const TemporaryFolder folder;
  write_file("raw", kRaw);
  std::filesystem::create_directory("raw.new");
  expect_failure("cannot write 'raw.new': it exists and is not a regular file");
}

TEST(CondenseFile, AFileSizeLimitLeavesNoPartFile) {
  const TemporaryFolder folder;
  write_file("raw", repeated(300, kRaw));
  write_file("raw.new", "earlier");
  const InterruptWatch watch;  // ignores SIGXFSZ
  rlimit before{};
  ::getrlimit(RLIMIT_FSIZE, &before);
  rlimit small = before;
  small.rlim_cur = 300'000;
  ::setrlimit(RLIMIT_FSIZE, &small);
  expect_failure("cannot write 'raw.new.part': File too large");
  ::setrlimit(RLIMIT_FSIZE, &before);
}

// A screen whose clock runs a callback on each progress update, but not on its first
// reading.
Condensed condense_while(const std::function<void()>& action) {
  std::ostringstream terminal;
  bool begun = false;
  const ProgressLine::Screen screen{.stream = terminal, .shown = true, .clock = [&] {
                                      if (begun) {
                                        action();
                                      }
                                      begun = true;
                                      return 0.0;
                                    }};
  return condense_file({"raw", std::nullopt, system_free_space, screen});
}

// Signals are checked while the file is read: a whole one may take minutes.
TEST(CondenseFile, AStopSignalIsCheckedBeforeEachRead) {
  const TemporaryFolder folder;
  write_file("raw", repeated(300, kRaw));
  int steps_after = 0;
  const InterruptWatch watch;
  EXPECT_THROW(condense_while([&] {
                 if (InterruptWatch::signal_caught() != 0) {
                   ++steps_after;
                 }
                 std::raise(SIGTERM);
               }),
               Interrupted);
  EXPECT_EQ(steps_after, 0);
}

TEST(CondenseFile, AStopSignalLeavesNothing) {
  const TemporaryFolder folder;
  write_file("raw", repeated(300, kRaw));
  write_file("raw.new", "earlier");
  const Files before = folder_content();
  const InterruptWatch watch;
  EXPECT_THROW(condense_while([] { std::raise(SIGTERM); }), Interrupted);
  EXPECT_EQ(folder_content(), before);
}

TEST(CondenseFile, AFileThatGrowsWhileItIsReadIsReadToItsEnd) {
  const TemporaryFolder folder;
  write_file("raw", repeated(300, kRaw));
  const Condensed done = condense_while([grown = false]() mutable {
    if (!grown) {
      std::ofstream("raw", std::ios::app | std::ios::binary) << repeated(100, kRaw);
    }
    grown = true;
  });
  EXPECT_EQ(done.lines, 400);
  EXPECT_EQ(done.size_before, static_cast<std::int64_t>(400 * kRaw.size()));
  EXPECT_TRUE(folder_content()["raw.new"] == repeated(400, kCondensed));
}

TEST(CondenseFile, AFileThatShrinksWhileItIsReadIsAFailure) {
  const TemporaryFolder folder;
  write_file("raw", repeated(300, kRaw));
  try {
    condense_while([] { std::filesystem::resize_file("raw", 100 * kRaw.size()); });
    ADD_FAILURE() << "condensed";
  } catch (const Failure& error) {
    EXPECT_STREQ(error.what(), "cannot read 'raw': it has become shorter");
  }
  EXPECT_EQ(folder_content().size(), 1U);
}

TEST(CondenseFile, AnInvalidFileIsReportedEvenWhenTheDiskIsFull) {
  const TemporaryFolder folder;
  write_file("raw", repeated(100'000, "hello\n"));
  expect_failure("'raw': line 1, field 1: 'hello' is not an integer",
                 [](const std::string&) { return 0; });
  write_file("raw", kCondensed);
  expect_failure("'raw' is condensed already", [](const std::string&) { return 0; });
}

TEST(CondenseFile, TooLittleDiskSpaceIsReportedBeforeAnythingIsWritten) {
  const TemporaryFolder folder;
  write_file("raw", repeated(300, kRaw));
  write_file("raw.new", "earlier");
  write_file("raw.new.part", "");
  expect_failure(
      "not enough disk space for 'raw.new': it takes about 1080300 bytes, and 1080299 "
      "are "
      "free",
      [](const std::string&) { return 300 * 3601 - 1; });
}

TEST(CondenseFile, AnotherInputOfTheRunIsNotReplaced) {
  const TemporaryFolder folder;
  write_file("raw", kRaw);
  write_file("raw.new", "raw\n");
  companion::Inputs inputs;
  inputs.add("the list", regular_file(std::string("raw.new")));
  std::ostringstream nobody;
  const ProgressLine::Screen screen{.stream = nobody};
  try {
    condense_file({"raw", std::nullopt, system_free_space, screen, inputs});
    ADD_FAILURE() << "condensed";
  } catch (const Failure& error) {
    EXPECT_STREQ(error.what(),
                 "'raw.new' is the same file as the list; nothing was written");
  }
  EXPECT_EQ(folder_content(), (Files{{"raw", kRaw}, {"raw.new", "raw\n"}}));
}

// 72 lines have 259,272 bytes, 73 have 262,873; a piece has 262,144.
TEST(CondensedOutput, IsWrittenInLargePieces) {
  const TemporaryFolder folder;
  PartFile file("grid");
  CondensedOutput output(file);
  const std::string line(kCondensedLine, '7');
  for (int i = 1; i <= 73; ++i) {
    EXPECT_EQ(std::filesystem::file_size("grid.part"), 0U) << i;
    line.copy(output.next_line(), line.size());
    output.end_line();
  }
  EXPECT_TRUE(file_content("grid.part") == repeated(73, line + "\n"));
}

}  // namespace
}  // namespace veldmark::tersify
