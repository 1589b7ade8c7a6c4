#include "tersify/check_file.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

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
  const ProgressLine::Screen screen{.stream = nobody};
  try {
    return check_file("grid", kOneYear, screen).value_or("complete");
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

TEST(CheckFile, ACompressedFileIsAFailure) {
  EXPECT_EQ(verdict("\x1f\x8b\x08"),
            "failure: grid is compressed (gzip); decompress it first");
}

}  // namespace
}  // namespace veldmark::tersify
