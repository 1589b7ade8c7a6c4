// Compressed published files: which are read, which are refused, and which files are
// left on the disk.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>

#include "companion/line_buffer.h"
#include "compressed.h"
#include "raw_text.h"
#include "run_in_process.h"
#include "support/temporary_folder.h"
#include "tersify/gzip_reader.h"

namespace veldmark::tersify {
namespace {

using testing::compressed;
using testing::condensed_line;
using testing::numbers;
using testing::Outcome;
using testing::raw_line;
using testing::raw_line_with;
using testing::repeated;
using testing::run;
using veldmark::testing::file_content;
using veldmark::testing::folder_content;
using veldmark::testing::TemporaryFolder;
using veldmark::testing::write_file;
using Files = std::map<std::string, std::string>;

const std::string kRaw = raw_line(numbers()) + "\n";
const std::string kCondensed = condensed_line(numbers()) + "\n";
constexpr GridShape kTwelveLines{.years = 1, .rows = 1};
const std::string kTwelve = repeated(12, kRaw);
const std::string kTwelveCondensed = repeated(12, kCondensed);

Outcome condense(const std::string& name, const FreeSpace& room = system_free_space) {
  return run({name}, "", {.free_space = room, .shape = kTwelveLines});
}

std::string wrote(const std::string& copy, std::size_t lines, std::size_t before) {
  return "wrote '" + copy + "': " + std::to_string(lines) + " lines, " +
         std::to_string(before) + " bytes before, " + std::to_string(lines * 3601) +
         " after\n";
}

// Returns what gzip itself makes of the file "a.dat.gz".
int status_of_gzip() {
  return WEXITSTATUS(std::system("gzip -dc a.dat.gz > by-gzip 2> words-of-gzip"));
}

// `bytes` as "a.dat.gz" become the copy of `text`; tersify says `messages`. gzip
// agrees.
void expect_copy(const std::string& bytes, const std::string& text,
                 const std::string& condensed, const std::string& messages = "") {
  const TemporaryFolder folder;
  write_file("a.dat.gz", bytes);
  const Outcome result = condense("a.dat.gz");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.messages, messages);
  EXPECT_TRUE(folder_content() ==
              (Files{{"a.dat.gz", bytes}, {"a.dat.new", condensed}}));
  status_of_gzip();
  EXPECT_TRUE(file_content("by-gzip") == text);
}

// `bytes` as "a.dat.gz" are refused, and gzip fails, too; the folder stays as it is,
// both with an earlier copy and without one.
void expect_refusal(const std::string& bytes, const std::string& message) {
  const TemporaryFolder folder;
  write_file("a.dat.gz", bytes);
  const std::string all =
      "tersify: " + message + "\ntersify: not condensed: 'a.dat.gz'\n";
  for (const bool has_earlier : {false, true}) {
    if (has_earlier) {
      write_file("a.dat.new", "earlier");
    }
    const Files before = folder_content();
    const Outcome result = condense("a.dat.gz");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.messages, all);
    EXPECT_TRUE(folder_content() == before);
  }
  EXPECT_EQ(status_of_gzip(), 1);
}

std::string damaged_at(std::string bytes, std::size_t place) {
  bytes.at(place) = static_cast<char>(~bytes.at(place));
  return bytes;
}

TEST(Gzip, ACompressedFileGetsTheCopyOfItsText) {
  const TemporaryFolder folder;
  const std::string bytes = compressed(kTwelve);
  write_file("a.dat.gz", bytes);
  const Outcome result = condense("a.dat.gz");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output, wrote("a.dat.new", 12, bytes.size()));
  EXPECT_EQ(result.messages, "");
  EXPECT_TRUE(folder_content() ==
              (Files{{"a.dat.gz", bytes}, {"a.dat.new", kTwelveCondensed}}));
}

TEST(Gzip, ALongTextIsReadInPieces) {
  std::string text;
  std::string condensed;
  for (int i = 0; i < 1200;
       ++i) {  // so that even the compressed file takes several reads
    std::vector<std::string> fields = numbers();
    std::uint32_t random = static_cast<std::uint32_t>(i) + 1;
    for (std::string& field : fields) {
      random = random * 1664525U + 1013904223U;
      field = std::to_string((random >> 8U) % 10000);
    }
    text += raw_line(fields) + "\n";
    condensed += condensed_line(fields) + "\n";
  }
  expect_copy(compressed(text), text, condensed);
}

TEST(Gzip, TheNameOfTheCopyIsThatOfTheTexts) {
  for (const auto& [name, copy] : Files{{"a.gz", "a.new"},
                                        {"a", "a.new"},
                                        {"a.dat", "a.dat.new"},
                                        {"a.GZ", "a.GZ.new"},
                                        {".gz", ".new"},
                                        {"a.gz.dat", "a.gz.dat.new"},
                                        {"a.gz.gz", "a.gz.new"},
                                        {"sub/a.dat.gz", "sub/a.dat.new"}}) {
    const TemporaryFolder folder;
    std::filesystem::create_directory("sub");
    write_file(name, compressed(kTwelve));
    EXPECT_EQ(condense(name).status, 0) << name;
    EXPECT_TRUE(file_content(copy) == kTwelveCondensed) << name;
  }
}

TEST(Gzip, SeveralMembersAreOneText) {
  const TemporaryFolder folder;
  const std::size_t half = kTwelve.size() / 2 + 7;  // in the middle of a line
  expect_copy(
      compressed(kTwelve.substr(0, half)) + compressed("") +
          compressed(kTwelve.substr(half)),
      kTwelve, kTwelveCondensed,
      "tersify: 'a.dat.gz' has 3 compressed members; they were read one after the "
      "other\n");
}

TEST(Gzip, ZerosAfterTheEndAreSkipped) {
  const TemporaryFolder folder;
  const std::string bytes = compressed(kTwelve);
  expect_copy(bytes + std::string(1, '\0'), kTwelve, kTwelveCondensed);
  expect_copy(bytes + std::string(600'000, '\0'), kTwelve, kTwelveCondensed);
}

TEST(Gzip, TrailingGarbageIsIgnoredWithAWarning) {
  const TemporaryFolder folder;
  const std::string bytes = compressed(kTwelve);
  const std::string told = "tersify: 'a.dat.gz': trailing garbage ignored\n";
  for (const std::string& garbage :
       {std::string("xy"), std::string("\x1fx"), std::string("\0\0x", 3),
        std::string(1, '\0') + bytes, std::string(300'000, 'x')}) {
    expect_copy(bytes + garbage, kTwelve, kTwelveCondensed, told);
  }
  write_file("a.dat.gz", bytes + "xy");
  EXPECT_EQ(status_of_gzip(), 2);
  EXPECT_EQ(file_content("words-of-gzip"),
            "\ngzip: a.dat.gz: decompression OK, trailing garbage ignored\n");
}

TEST(Gzip, ATruncatedFileIsReportedWhereverItEnds) {
  const TemporaryFolder folder;
  const std::string bytes = compressed(kTwelve);
  const std::string cut =
      "the compressed file 'a.dat.gz' is cut: it ends before its data do";
  for (std::size_t size = 2; size < bytes.size(); size += 13) {
    expect_refusal(bytes.substr(0, size), cut);
  }
  for (std::size_t missing = 1; missing <= 9; ++missing) {
    expect_refusal(bytes.substr(0, bytes.size() - missing), cut);
  }
  expect_refusal(bytes + bytes.substr(0, 20), cut);  // in a second member
  expect_refusal(bytes + bytes.substr(0, 2), cut);
  expect_refusal(bytes + bytes.substr(0, 1), cut);
  expect_refusal(bytes + "x", cut);  // a single byte counts as a member, as in gzip
}

TEST(Gzip, ADamagedFileIsReported) {
  const TemporaryFolder folder;
  const std::string bytes = compressed(kTwelve);
  const std::string damaged = "the compressed file 'a.dat.gz' is damaged: ";
  expect_refusal(damaged_at(bytes, bytes.size() - 8), damaged + "incorrect data check");
  expect_refusal(damaged_at(bytes, bytes.size() - 1),
                 damaged + "incorrect length check");
  expect_refusal(damaged_at(bytes, 2), damaged + "unknown compression method");
  expect_refusal(damaged_at(bytes + bytes, bytes.size() + 2),
                 damaged + "unknown compression method");
  std::string flags = bytes;
  flags.at(3) = '\x20';
  expect_refusal(flags, damaged + "unknown header flags set");
}

// Returns a gzip file with `text` stored uncompressed, so that a changed byte changes
// one character.
//
//   checked    the text that the checksum is computed from; as long as `text`
std::string stored(const std::string& text, const std::string& checked) {
  constexpr std::size_t kLongestBlock = 65535;
  std::string bytes("\x1f\x8b\x08\0\0\0\0\0\0\x03", 10);
  for (std::size_t begin = 0; begin < text.size(); begin += kLongestBlock) {
    const std::string block = text.substr(begin, kLongestBlock);
    const bool is_last = begin + block.size() == text.size();
    const auto length = static_cast<std::uint32_t>(block.size());
    bytes += is_last ? '\x01' : '\x00';
    for (const std::uint32_t number : {length, ~length}) {
      bytes += static_cast<char>(number & 0xFFU);
      bytes += static_cast<char>(number >> 8U & 0xFFU);
    }
    bytes += block;
  }
  const std::string whole = compressed(checked);
  return bytes + whole.substr(whole.size() - 8);
}

// Damage in the middle of the file makes invalid text: the message must blame the file,
// not a line and field. The text is longer than one read.
TEST(Gzip, DamageTakesPrecedenceOverTheInvalidText) {
  const TemporaryFolder folder;
  const std::string text = repeated(240, kRaw);
  ASSERT_GT(text.size(), 3 * companion::kLongestLine);
  expect_copy(stored(text, text), text, repeated(240, kCondensed));
  for (const std::size_t place : {std::size_t{0}, text.size() / 2, text.size() - 2}) {
    std::string wrong = text;
    wrong.at(place) = 'x';
    expect_refusal(stored(wrong, text),
                   "the compressed file 'a.dat.gz' is damaged: incorrect data check");
  }
}

// Returns the gzip file `bytes` with a name added to its header, to make it `size`
// bytes long.
std::string with_name(std::string bytes, std::size_t size) {
  constexpr std::size_t kFlags = 3;
  constexpr std::size_t kHeader = 10;
  bytes.at(kFlags) = '\x08';
  bytes.insert(kHeader, std::string(size - bytes.size() - 1, 'n') + '\0');
  return bytes;
}

// At any offset relative to the boundary between two reads of the file.
TEST(Gzip, AMemberMayBeginAnywhere) {
  const TemporaryFolder folder;
  constexpr std::size_t kRead = std::size_t{256} * 1024;
  const std::string bytes = compressed(kTwelve);
  const auto expect_two = [](const std::string& two) {
    expect_copy(two, kTwelve + kTwelve, kTwelveCondensed + kTwelveCondensed,
                "tersify: 'a.dat.gz' has 2 compressed members; they were read one "
                "after the other\n");
  };
  for (std::size_t size = kRead - 3; size <= kRead + 1; ++size) {
    expect_two(with_name(bytes, size) + bytes);
    // Not a member, although it has the second magic byte.
    expect_copy(with_name(bytes, size) + "x\x8b", kTwelve, kTwelveCondensed,
                "tersify: 'a.dat.gz': trailing garbage ignored\n");
  }
  // Only the first byte is in the first read, and more than a whole read follows.
  expect_two(with_name(bytes, kRead - 1) + with_name(bytes, 2 * kRead));
}

// A buffer of lines may have room for one more byte.
TEST(Gzip, ASingleByteCanBeRead) {
  const TemporaryFolder folder;
  const std::string bytes = compressed("12\n");
  std::size_t place = 0;
  GzipReader reader("a.dat.gz", [&](char* buffer, std::size_t size) {
    const std::size_t count = bytes.copy(buffer, size, place);
    place += count;
    return count;
  });
  char byte = 0;
  for (const char expected : {'1', '2', '\n'}) {
    EXPECT_EQ(reader.read(&byte, 1), 1U);
    EXPECT_EQ(byte, expected);
  }
  EXPECT_EQ(reader.read(&byte, 1), 0U);
}

TEST(Gzip, AFaultInTheTextOfASoundFileIsReported) {
  const TemporaryFolder folder;
  const std::string name = "tersify: 'a.dat.gz'";
  const auto message_of = [](const std::string& bytes) {
    write_file("a.dat.gz", bytes);
    const Outcome result = condense("a.dat.gz");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(folder_content().size(), 1U);
    return result.messages.substr(0, result.messages.find('\n'));
  };
  EXPECT_EQ(message_of(compressed(kRaw + raw_line_with(7, "12a") + "\n" + kTwelve)),
            name + ": line 2, field 7: '12a' is not an integer");
  EXPECT_EQ(message_of(compressed("")), name + ": the file is empty");
  EXPECT_EQ(message_of(compressed(kCondensed)), name + " is condensed already");
  EXPECT_EQ(message_of(compressed("BZh91AY")),
            name + " is compressed (bzip2); decompress it first: gunzip -k 'a.dat.gz'");
  EXPECT_EQ(message_of(compressed(compressed(kTwelve))),
            name + " is compressed (gzip); decompress it first: gunzip -k 'a.dat.gz'");
}

TEST(Gzip, AFileNamedGzThatIsNotGzipGetsAHint) {
  expect_refusal("<!DOCTYPE html>\n",
                 "'a.dat.gz': line 1, field 1: '<!DOCTYPE' is not an integer (the file "
                 "is not gzip, although its name says so)");
  expect_refusal("",
                 "'a.dat.gz': the file is empty (the file is not gzip, although its "
                 "name says so)");
}

// A browser may have decompressed the download.
TEST(Gzip, PlainTextNamedGzIsCondensed) {
  const TemporaryFolder folder;
  write_file("a.dat.gz", kTwelve);
  EXPECT_EQ(condense("a.dat.gz").status, 0);
  EXPECT_TRUE(file_content("a.dat.new") == kTwelveCondensed);
}

TEST(Gzip, TooLittleDiskSpaceIsReportedBeforeAnythingIsWritten) {
  const TemporaryFolder folder;
  write_file("a.dat.gz", compressed(kTwelve));
  const auto with_room = [](std::int64_t bytes) {
    return condense("a.dat.gz", [bytes](const std::string&) { return bytes; });
  };
  EXPECT_EQ(
      with_room(12 * 3601 - 1).messages,
      "tersify: not enough disk space for 'a.dat.new': it takes about 43212 bytes, and "
      "43211 are free\ntersify: not condensed: 'a.dat.gz'\n");
  EXPECT_EQ(folder_content().size(), 1U);
  EXPECT_EQ(with_room(12 * 3601).status, 0);
}

// Returns a number as four bytes, the lowest first.
std::string four_bytes(std::size_t number) {
  std::string bytes;
  for (const unsigned shift : {0U, 8U, 16U, 24U}) {
    bytes += static_cast<char>(number >> shift & 0xFFU);
  }
  return bytes;
}

TEST(Gzip, GarbageAtTheEndIsNotTakenForASize) {
  const TemporaryFolder folder;
  const std::string bytes = compressed(kTwelve);
  const auto status_with = [&](std::size_t size) {
    write_file("a.dat.gz", bytes + four_bytes(size));
    return condense("a.dat.gz", [](const std::string&) { return 50'000; }).status;
  };
  EXPECT_EQ(status_with(0xFFFFFFFFU), 0);
  // Deflate makes a text at most 1032 times shorter.
  const std::size_t highest = 1032 * (bytes.size() + 4);
  EXPECT_EQ(status_with(highest + 1), 0);
  EXPECT_EQ(status_with(highest), 1);  // taken for a size: too little disk space
}

// With or without the netCDF library: a file that only begins like netCDF is refused.
TEST(Gzip, CompressedNetcdfIsDecompressedBesideTheCopyAndLeavesNothing) {
  const TemporaryFolder folder;
  const std::string content = "CDF\x01" + std::string(700'000, 'x');
  const std::string bytes = compressed(content);
  write_file("a.dat.nc.gz", bytes);
  const auto message = [](const FreeSpace& room) {
    const Outcome result = condense("a.dat.nc.gz", room);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    return result.messages.substr(0, result.messages.find('\n'));
  };
  EXPECT_EQ(
      message([](const std::string&) { return 600'000; }),
      "tersify: not enough disk space for 'a.dat.new.nc': it takes about 700004 bytes, "
      "and 600000 are free");
  EXPECT_EQ(folder_content().size(), 1U);

  write_file("a.dat.new.nc.part", "of a run that was killed");
  EXPECT_TRUE(message(system_free_space).starts_with("tersify: 'a.dat.nc.gz'"));
  EXPECT_TRUE(folder_content() == (Files{{"a.dat.nc.gz", bytes}}));

  write_file("a.dat.nc.gz", damaged_at(bytes, bytes.size() - 8));
  EXPECT_EQ(message(system_free_space),
            "tersify: the compressed file 'a.dat.nc.gz' is damaged: incorrect data "
            "check");
  EXPECT_EQ(folder_content().size(), 1U);

  std::filesystem::create_directory("a.dat.new.nc.part");
  EXPECT_EQ(message(system_free_space),
            "tersify: cannot write 'a.dat.new.nc.part': Is a directory");
}

TEST(Gzip, TheTemporaryFileReplacesNoInput) {
  const TemporaryFolder folder;
  const std::string bytes = compressed("CDF\x01 and more");
  write_file("a.dat.nc.gz", bytes);
  std::filesystem::create_hard_link("a.dat.nc.gz", "a.dat.new.nc.part");
  EXPECT_EQ(condense("a.dat.nc.gz").messages,
            "tersify: 'a.dat.new.nc.part' is the same file as 'a.dat.nc.gz'; nothing "
            "was written\ntersify: not condensed: 'a.dat.nc.gz'\n");
  EXPECT_TRUE(file_content("a.dat.nc.gz") == bytes);
}

TEST(Gzip, TheCopyReplacesNoInput) {
  const TemporaryFolder folder;
  const std::string bytes = compressed(kTwelve);
  write_file("a.dat.gz", bytes);
  std::filesystem::create_hard_link("a.dat.gz", "a.dat.new");
  EXPECT_EQ(condense("a.dat.gz").messages,
            "tersify: 'a.dat.new' is the same file as 'a.dat.gz'; nothing was written\n"
            "tersify: not condensed: 'a.dat.gz'\n");
  EXPECT_TRUE(file_content("a.dat.gz") == bytes);
}

// A user may keep a.dat.gz beside the decompressed a.dat. Otherwise the copy would be
// that of the last one.
TEST(Gzip, TwoFilesOfOneRunDoNotMakeTheSameCopy) {
  const TemporaryFolder folder;
  write_file("a.dat", kTwelve);
  write_file("a.dat.gz", compressed(repeated(24, kRaw)));
  const Outcome result =
      run({"a.dat", "a.dat.gz", "a.dat"}, "", {.shape = kTwelveLines});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output, wrote("a.dat.new", 12, kTwelve.size()) +
                               wrote("a.dat.new", 12, kTwelve.size()) +
                               "condensed 2 of 3 files\n");
  EXPECT_EQ(result.messages,
            "tersify: 'a.dat.new' is the same file as the copy of 'a.dat'; nothing was "
            "written\n"
            "tersify: not condensed: 'a.dat.gz'\n");
  EXPECT_TRUE(file_content("a.dat.new") == kTwelveCondensed);
}

TEST(Gzip, AListMayNameCompressedFilesButMustNotBeOne) {
  const TemporaryFolder folder;
  write_file("a.dat.gz", compressed(kTwelve));
  write_file("list", "a.dat.gz\n");
  EXPECT_EQ(run({"--list", "list"}, "", {.shape = kTwelveLines}).status, 0);
  EXPECT_TRUE(file_content("a.dat.new") == kTwelveCondensed);
  write_file("list.gz", compressed("a.dat.gz\n"));
  EXPECT_EQ(run({"--list", "list.gz"}).messages,
            "tersify: 'list.gz' is compressed (gzip); decompress it first: gunzip -k "
            "'list.gz'\n");
}

TEST(Gzip, ACheckRefusesCompressedFiles) {
  const TemporaryFolder folder;
  write_file("a.dat.new.gz", compressed(kTwelveCondensed));
  EXPECT_EQ(run({"--check", "a.dat.new.gz"}).messages,
            "tersify: 'a.dat.new.gz' is compressed (gzip); decompress it first: gunzip "
            "-k 'a.dat.new.gz'\n");
}

}  // namespace
}  // namespace veldmark::tersify
