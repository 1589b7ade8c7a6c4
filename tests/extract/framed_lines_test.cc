#include "extract/framed_lines.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "catalogue/variable_name.h"
#include "support/temporary_folder.h"
#include "util/failure.h"

namespace veldmark::extract {
namespace {

using Rows = std::vector<std::int32_t>;
using veldmark::testing::TemporaryFolder;
using veldmark::testing::write_file;

constexpr std::size_t kRows = 360;
constexpr std::size_t kMonths = 13;

// The 3600 characters of a line: its number, counted from 0, and blanks.
std::string line_of(std::size_t number) {
  std::string line = std::to_string(number);
  line.resize(3600, ' ');
  return line;
}

// The lines of 1951 and of January 1952; tests damage some.
class FramedLinesTest : public ::testing::Test {
 protected:
  explicit FramedLinesTest(std::string line_end = "\n")
      : line_end_(std::move(line_end)) {
    for (std::size_t i = 0; i < kMonths * kRows; ++i) {
      text_ += line_of(i) + line_end_;
    }
  }

  // The offset of a line's first character.
  [[nodiscard]] std::size_t place_of(std::size_t number) const {
    return number * (3600 + line_end_.size());
  }

  // The file as it is; `size` bytes of it are expected.
  [[nodiscard]] InputFile open_file(std::size_t size) const {
    write_file("grid", text_);
    return {.name = "grid",
            .entry = *find_by_short_name("tmp"),
            .file = FileDescriptor("grid", O_RDONLY),
            .size = static_cast<std::int64_t>(size),
            .line_end_size = line_end_.size(),
            .years = {.first = 1951, .last = 1952}};
  }

  // Reads one month and expects the lines of `rows`; `first` is the line number of the
  // month's first row. Returns the number of bytes reported as read.
  std::int64_t expect_lines(const InputFile& input, const Rows& rows,
                            const Years& years, std::size_t month, std::size_t first) {
    std::int64_t bytes = 0;
    const Progress progress = [&](std::int64_t count) { bytes += count; };
    FramedLines lines(input, rows, years, progress);
    std::size_t next = 0;
    lines.for_each(month, [&](std::size_t index, std::string_view line) {
      EXPECT_EQ(index, next++);
      const auto row = static_cast<std::size_t>(rows.at(index));
      EXPECT_EQ(line, line_of(first + row - 1));
    });
    EXPECT_EQ(next, rows.size());
    return bytes;
  }

  // Reads one month. Returns the numbers of bytes that were read with one call each.
  static std::vector<std::int64_t> pieces_of(const InputFile& input, const Rows& rows,
                                             std::size_t month) {
    std::vector<std::int64_t> pieces;
    const Progress progress = [&](std::int64_t count) { pieces.push_back(count); };
    FramedLines lines(input, rows, input.years, progress);
    lines.for_each(month, [](std::size_t /*index*/, std::string_view /*line*/) {});
    return pieces;
  }

  // Returns the failure when January 1952 is read; a row has the line 4320 + row.
  std::string fault_of(const Rows& rows) {
    const InputFile input = open_file(text_.size());
    FramedLines lines(input, rows, {.first = 1952, .last = 1952}, no_progress_);
    try {
      lines.for_each(0, [](std::size_t /*index*/, std::string_view /*line*/) {});
    } catch (const Failure& failure) {
      return failure.what();
    }
    return "";
  }

  TemporaryFolder folder_;
  std::string line_end_;
  std::string text_;
  Progress no_progress_;
};

class CrLfFramedLinesTest : public FramedLinesTest {
 protected:
  CrLfFramedLinesTest() : FramedLinesTest("\r\n") {}
};

Rows all_rows() {
  Rows rows;
  for (std::int32_t row = 1; row <= 360; ++row) {
    rows.push_back(row);
  }
  return rows;
}

TEST_F(FramedLinesTest, HandsOutTheLinesOfTheRowsInOrder) {
  const InputFile input = open_file(text_.size());
  const Years both = input.years;
  EXPECT_EQ(expect_lines(input, {}, both, 0, 0), 0);
  EXPECT_EQ(expect_lines(input, {1}, both, 0, 0), 3601);
  EXPECT_EQ(expect_lines(input, {1, 2, 3, 7, 9, 10, 360}, both, 5, 5 * kRows),
            7 * 3601);
  EXPECT_EQ(expect_lines(input, {2, 360}, {.first = 1952, .last = 1952}, 0, 12 * kRows),
            2 * 3601);
  EXPECT_EQ(expect_lines(input, all_rows(), both, 12, 12 * kRows), 360 * 3601);
}

// A piece has at most 72 lines: 256 KiB.
TEST_F(FramedLinesTest, ReadsAdjacentRowsTogether) {
  const InputFile input = open_file(text_.size());
  EXPECT_EQ(pieces_of(input, {1, 2, 3, 7, 9, 10, 360}, 5),
            (std::vector<std::int64_t>{3 * 3601, 3601, 2 * 3601, 3601}));
  EXPECT_EQ(pieces_of(input, all_rows(), 12), std::vector<std::int64_t>(5, 72 * 3601));
}

TEST_F(FramedLinesTest, TheLastLineMayLackItsLineEnd) {
  text_.pop_back();
  const InputFile input = open_file(text_.size());
  expect_lines(input, {360}, input.years, 12, 12 * kRows);
  expect_lines(input, all_rows(), input.years, 12, 12 * kRows);
}

TEST_F(CrLfFramedLinesTest, TakesCrLf) {
  InputFile input = open_file(text_.size());
  expect_lines(input, {1, 2, 360}, input.years, 0, 0);
  expect_lines(input, all_rows(), input.years, 12, 12 * kRows);
  text_.erase(text_.size() - 2);
  const InputFile without_end = open_file(text_.size());
  expect_lines(without_end, {1, 360}, input.years, 12, 12 * kRows);
}

TEST_F(CrLfFramedLinesTest, NeedsBothCharactersOfALineEnd) {
  text_[place_of(4320 + 5) - 2] = ' ';
  EXPECT_EQ(fault_of({6}), "");
  EXPECT_EQ(fault_of({5}),
            "'grid': line 4325: it does not end after 3600 characters; tersify --check "
            "tells more");
}

TEST_F(FramedLinesTest, NeedsALineEndOnBothSides) {
  text_[place_of(4320 + 5) - 1] = ' ';
  EXPECT_EQ(fault_of({4, 7}), "");
  EXPECT_EQ(fault_of({5}),
            "'grid': line 4325: it does not end after 3600 characters; tersify --check "
            "tells more");
  EXPECT_EQ(fault_of({4, 6}),
            "'grid': line 4326: it does not begin in its place; tersify --check tells "
            "more");
}

TEST_F(FramedLinesTest, ATruncatedFileIsAFailure) {
  const InputFile input = open_file(text_.size());
  std::filesystem::resize_file("grid", place_of(10) + 3600);
  expect_lines(input, {1, 2, 10}, input.years, 0, 0);
  const Rows rows = all_rows();
  FramedLines lines(input, rows, input.years, no_progress_);
  try {
    lines.for_each(0, [](std::size_t /*index*/, std::string_view /*line*/) {});
    FAIL() << "lines that are not there were read";
  } catch (const Failure& failure) {
    EXPECT_STREQ(failure.what(), "cannot read 'grid': it became shorter");
  }
}

TEST_F(FramedLinesTest, SaysWhyAFileCantBeRead) {
  const InputFile folder{.name = "folder",
                         .entry = *find_by_short_name("tmp"),
                         .file = FileDescriptor(".", O_RDONLY),
                         .size = 12 * 360 * 3601,
                         .line_end_size = 1,
                         .years = {.first = 1951, .last = 1952}};
  const Rows rows{1};
  FramedLines lines(folder, rows, folder.years, no_progress_);
  try {
    lines.for_each(0, [](std::size_t /*index*/, std::string_view /*line*/) {});
    FAIL() << "a folder was read";
  } catch (const Failure& failure) {
    EXPECT_STREQ(failure.what(), "cannot read 'folder': Is a directory");
  }
}

}  // namespace
}  // namespace veldmark::extract
