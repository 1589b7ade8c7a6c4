// What condensing leaves on the disk, whatever goes wrong.

#include "tersify/condense_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>

#include "raw_text.h"
#include "support/temporary_folder.h"
#include "tersify/line_buffer.h"
#include "util/failure.h"
#include "util/interrupt_watch.h"

namespace veldmark::tersify {
namespace {

using testing::condensed_line;
using testing::numbers;
using testing::raw_line;
using testing::raw_line_with;
using testing::repeated;
using veldmark::testing::folder_content;
using veldmark::testing::TemporaryFolder;
using veldmark::testing::write_file;
using Files = std::map<std::string, std::string>;

const std::string kRaw = raw_line(numbers()) + "\n";
const std::string kCondensed = condensed_line(numbers()) + "\n";

Condensed condense(const std::string& name, const Disk& disk = {}) {
  std::ostringstream nobody;
  const ProgressLine::Screen screen{.stream = nobody};
  return condense_file(name, disk, screen);
}

// Condensing "raw" fails with `message` and leaves the folder as it was.
void expect_failure(const std::string& message, const Disk& disk = {}) {
  const Files before = folder_content();
  try {
    condense("raw", disk);
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

TEST(CondenseFile, ReplacesAnEarlierCopyAndTheRestOfAKilledRun) {
  const TemporaryFolder folder;
  write_file("raw", kRaw);
  write_file("raw.new", "earlier");
  write_file("raw.new.part", "of a run that was killed");
  condense("raw");
  EXPECT_EQ(folder_content(), (Files{{"raw", kRaw}, {"raw.new", kCondensed}}));
}

TEST(CondenseFile, CarriageReturnsBelongToTheLineEnds) {
  const TemporaryFolder folder;
  write_file("raw", repeated(3, raw_line(numbers()) + "\r\n"));
  condense("raw");
  EXPECT_EQ(folder_content()["raw.new"], repeated(3, kCondensed));
}

TEST(CondenseFile, ALastLineWithoutLineEndIsALine) {
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
      "raw: line 2, field 7: '123456' needs more than five characters");
}

TEST(CondenseFile, ALetterIsAFault) {
  expect_content_failure(repeated(2000, kRaw) + raw_line_with(720, "12a") + "\n",
                         "raw: line 2001, field 720: '12a' is not an integer");
}

TEST(CondenseFile, AnEmptyLineIsAFault) {
  expect_content_failure(kRaw + "\n" + kRaw, "raw: line 2, field 1: the line is empty");
  expect_content_failure(kRaw + "\r\n", "raw: line 2, field 1: the line is empty");
}

TEST(CondenseFile, TooFewAndTooManyNumbersAreFaults) {
  auto fields = numbers();
  fields.pop_back();
  expect_content_failure(
      kRaw + raw_line(fields) + "\n",
      "raw: line 2, field 720: the line ends before it; a line holds 720 integers");
  expect_content_failure(raw_line(numbers()) + " 1\n",
                         "raw: line 1, field 721: '1' is too many; a line holds 720 "
                         "integers");
}

TEST(CondenseFile, AFileThatEndsWithinALineSaysSo) {
  auto fields = numbers();
  fields.resize(300);
  expect_content_failure(
      kRaw + raw_line(fields),
      "raw: line 2, field 301: the line ends before it; a line holds 720 integers (the "
      "file ends in this line)");
}

TEST(CondenseFile, ALineWithoutEndIsAFault) {
  expect_content_failure(
      kRaw + std::string(2 * kLongestLine, ' '),
      "raw: line 2, field 1: the line is longer than 262144 characters");
}

TEST(CondenseFile, AnEmptyFileIsAFault) {
  expect_content_failure("", "raw: the file is empty");
}

TEST(CondenseFile, AFileWhoseValuesTouchIsGuessedToBeCondensed) {
  expect_content_failure(repeated(720, "-9999") + "\n",
                         "raw: line 1, field 1: '-9999-9999-9999-9999...' is not an "
                         "integer (is the file condensed already?)");
}

TEST(CondenseFile, CompressedFilesAreRecognised) {
  const auto expect = [](const std::string& content, const std::string& kind) {
    expect_content_failure(content,
                           "raw is compressed (" + kind + "); decompress it first");
  };
  expect(std::string("\x1f\x8b\x08\x00", 4), "gzip");
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
  expect_failure("cannot read raw: No such file or directory");
  std::filesystem::create_directory("raw");
  expect_failure("cannot read raw: Is a directory");
  std::filesystem::remove("raw");
  ASSERT_EQ(::mkfifo("raw", 0600), 0);
  EXPECT_THROW(condense("raw"), Failure);
  EXPECT_FALSE(std::filesystem::exists("raw.new"));
}

TEST(CondenseFile, AnOutputThatIsTheInputIsRefused) {
  const TemporaryFolder folder;
  write_file("raw", kRaw);
  std::filesystem::create_hard_link("raw", "raw.new");
  expect_failure("raw.new is the same file as raw; nothing was written");
  std::filesystem::remove("raw.new");
  std::filesystem::create_symlink("raw", "raw.new");
  expect_failure("raw.new is the same file as raw; nothing was written");
  std::filesystem::remove("raw.new");
  std::filesystem::create_hard_link("raw", "raw.new.part");
  expect_failure("raw.new.part is the same file as raw; nothing was written");
}

TEST(CondenseFile, AnOutputThatIsAFolderIsRefused) {
  const TemporaryFolder folder;
  write_file("raw", kRaw);
  std::filesystem::create_directory("raw.new");
  expect_failure("cannot write raw.new: it exists and is not a regular file");
}

TEST(CondenseFile, ADiskThatFillsUpLeavesNothing) {
  const TemporaryFolder folder;
  write_file("raw", repeated(300, kRaw));
  write_file("raw.new", "earlier");
  Disk disk;
  disk.calls.write = [](int descriptor, const void* text, std::size_t size) {
    if (::lseek(descriptor, 0, SEEK_CUR) == 0) return ::write(descriptor, text, size);
    errno = ENOSPC;
    return ssize_t{-1};
  };
  expect_failure("cannot write raw.new.part: No space left on device", disk);
}

TEST(CondenseFile, AFailedCloseAndAFailedRenameLeaveNothing) {
  const TemporaryFolder folder;
  write_file("raw", kRaw);
  Disk disk;
  disk.calls.close = [](int descriptor) {
    ::close(descriptor);
    errno = EIO;
    return -1;
  };
  expect_failure("cannot write raw.new.part: Input/output error", disk);
  disk = {};
  disk.calls.rename = [](const char*, const char*) {
    errno = EACCES;
    return -1;
  };
  expect_failure("cannot write raw.new: Permission denied", disk);
}

TEST(CondenseFile, TooLittleRoomIsSaidBeforeAnythingIsWritten) {
  const TemporaryFolder folder;
  write_file("raw", repeated(300, kRaw));
  write_file("raw.new", "earlier");
  Disk disk;
  disk.free_space = [](const std::string& asked) -> std::optional<std::int64_t> {
    EXPECT_EQ(asked, ".");
    return 300 * 3601 - 1;
  };
  disk.calls.write = [](int, const void*, std::size_t) -> ssize_t {
    ADD_FAILURE() << "something was written";
    return -1;
  };
  expect_failure(
      "not enough room for raw.new: it takes about 1080300 bytes, and 1080299 are free",
      disk);
}

TEST(CondenseFile, RoomThatIsJustEnoughOrUnknownIsTried) {
  const TemporaryFolder folder;
  write_file("raw", repeated(300, kRaw));
  Disk disk;
  disk.free_space = [](const std::string&) { return 300 * 3601; };
  EXPECT_EQ(condense("raw", disk).lines, 300);
  disk.free_space = [](const std::string&) { return std::nullopt; };
  EXPECT_EQ(condense("raw", disk).lines, 300);
}

TEST(CondenseFile, RoomIsAskedForWhereTheCopyGoes) {
  const TemporaryFolder folder;
  std::filesystem::create_directory("data");
  write_file("data/raw", kRaw);
  Disk disk;
  disk.free_space = [](const std::string& asked) -> std::optional<std::int64_t> {
    EXPECT_EQ(asked, "data");
    return std::nullopt;
  };
  condense("data/raw", disk);
}

TEST(CondenseFile, TheSystemTellsTheFreeSpaceOfAFolder) {
  EXPECT_GT(system_free_space(".").value_or(0), 0);
  EXPECT_EQ(system_free_space("/no such folder"), std::nullopt);
}

TEST(CondenseFile, AStopSignalLeavesNothing) {
  const TemporaryFolder folder;
  write_file("raw", repeated(300, kRaw));
  write_file("raw.new", "earlier");
  const Files before = folder_content();
  const InterruptWatch watch;
  Disk disk;
  disk.calls.write = [](int descriptor, const void* text, std::size_t size) {
    std::raise(SIGTERM);
    return ::write(descriptor, text, size);
  };
  EXPECT_THROW(condense("raw", disk), Interrupted);
  EXPECT_EQ(folder_content(), before);
}

}  // namespace
}  // namespace veldmark::tersify
