#include "tersify/check_file.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "raw_text.h"
#include "support/temporary_folder.h"
#include "util/failure.h"

namespace veldmark::tersify {
namespace {

using testing::repeated;
using veldmark::testing::TemporaryFolder;
using veldmark::testing::write_file;

constexpr GridShape kOneYear{.years = 1, .rows = 2};

std::string verdict(const std::string& content) {
  const TemporaryFolder folder;
  write_file("grid", content);
  std::ostringstream nobody;
  const companion::ProgressLine::Screen screen{.stream = nobody};
  try {
    return check_file("grid", kOneYear, screen).fault.value_or("complete");
  } catch (const Failure& error) {
    return std::string("failure: ") + error.what();
  }
}

TEST(CheckFile, ReadsAFileToItsEnd) {
  EXPECT_EQ(verdict(repeated(24, repeated(720, " -999") + "\n")), "complete");
  EXPECT_EQ(verdict(repeated(23, repeated(720, " -999") + "\n")),
            "the file ends after 23 of 24 lines; the next is line 24 (year 1901, "
            "December, row 2)");
}

TEST(CheckFile, ALineWithoutEndIsTooLong) {
  EXPECT_EQ(verdict(repeated(200000, " -999")),
            "line 1 (year 1901, January, row 1), column 721: the line has more than "
            "3600 characters");
}

TEST(CheckFile, APublishedFileIsReportedAsPublished) {
  EXPECT_EQ(verdict(repeated(24, repeated(720, "  -999") + "\n")),
            "it is a published file; condense it with: tersify 'grid'");
  EXPECT_EQ(verdict(repeated(720, " -999 ") + "\r\n"),
            "it is a published file; condense it with: tersify 'grid'");
}

TEST(CheckFile, ADamagedCondensedFileIsNotReportedAsPublished) {
  EXPECT_EQ(verdict("-999 " + repeated(719, " -999") + "\n"),
            "line 1 (year 1901, January, row 1), column 1: '-999 ' is not an integer "
            "that ends at the right edge of its field");
}

TEST(CheckFile, AnEmptyFileEndsBeforeItsFirstLine) {
  EXPECT_EQ(verdict(""),
            "the file ends after 0 of 24 lines; the next is line 1 (year 1901, "
            "January, row 1)");
}

TEST(CheckFile, ImplausibleContentIsAWarning) {
  const TemporaryFolder folder;
  const std::string empty = repeated(720, " -999") + "\n";
  const std::string other = repeated(719, " -999") + "    7\n";
  write_file("grid", empty + other + repeated(21, empty) + other);
  std::ostringstream nobody;
  const companion::ProgressLine::Screen screen{.stream = nobody};
  const Verdict found = check_file("grid", kOneYear, screen);
  EXPECT_EQ(found.fault, std::nullopt);
  EXPECT_EQ(found.warnings,
            std::vector<std::string>{
                "line 4 (year 1901, February, row 2), column 720: no value, and the "
                "first month has one there"});
}

TEST(CheckFile, ACompressedFileIsAFailure) {
  EXPECT_EQ(verdict("\x1f\x8b\x08"),
            "failure: 'grid' is compressed (gzip); decompress it first");
}

TEST(CheckFile, ShowsItsProgress) {
  const TemporaryFolder folder;
  write_file("grid", repeated(24, repeated(720, " -999") + "\n"));
  std::ostringstream terminal;
  double now = 0;
  const companion::ProgressLine::Screen screen{
      .stream = terminal, .shown = true, .clock = [&] { return ++now; }};
  check_file("grid", kOneYear, screen);
  EXPECT_NE(terminal.str().find("'grid': 100 % done"), std::string::npos)
      << terminal.str();
}

}  // namespace
}  // namespace veldmark::tersify
