#include "extract/file_kind.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace veldmark::extract {
namespace {

using namespace std::string_view_literals;

std::string fields(int count, const std::string& field) {
  std::string line;
  for (int i = 0; i < count; ++i) {
    line += field;
  }
  return line;
}

TEST(DescribeOtherFile, KnowsFilesByTheirFirstBytes) {
  const std::vector<std::pair<std::string_view, std::string>> kinds{
      {""sv, "is empty"},
      {"\x1f\x8b\x08\0"sv,
       "is compressed: decompress it with gzip -d (tersify condenses a published file "
       "as it is)"},
      {"BZh9"sv, "is compressed: decompress it with bzip2 -d"},
      {"\xfd\x37\x7a\x58\x5a\0"sv, "is compressed: decompress it with xz -d"},
      {"\x28\xb5\x2f\xfd\x24"sv, "is compressed: decompress it with zstd -d"},
      {"PK\x03\x04\x14"sv, "is an archive: unpack it with unzip"},
      {"CDF\x02"sv,
       "is a netCDF file, no condensed grid file; tersify condenses published ones"},
      {"\x89HDF\r\n\x1a\n"sv,
       "is a netCDF-4 or HDF5 file, no condensed grid file; tersify condenses "
       "published "
       "ones"},
      {"\x01\0\x02"sv, "is a binary file, no condensed grid file"},
  };
  for (const auto& [head, what] : kinds) {
    EXPECT_EQ(describe_other_file("x", head), "'x' " + what);
  }
}

TEST(DescribeOtherFile, TakesALineOf720NumbersForThePublishedForm) {
  const std::string what = "'x' is in the published form: condense it with tersify x";
  EXPECT_EQ(describe_other_file("x", fields(720, "  -999") + "\n 12"), what);
  EXPECT_EQ(describe_other_file("x", fields(720, "\t-999 ") + "\r\n"), what);
  EXPECT_EQ(describe_other_file("x", fields(720, "1 ")), what);
}

TEST(DescribeOtherFile, CountsTheCharactersOfOtherFirstLines) {
  const auto first_line = [](const std::string& text) {
    const std::string start = "'x' is no condensed grid file: its first line has ";
    const std::string found = describe_other_file("x", text);
    EXPECT_EQ(found.substr(0, start.size()), start);
    return found.substr(start.size());
  };
  EXPECT_EQ(first_line("\nmore"), "0 characters, not 3600");
  EXPECT_EQ(first_line("some text\r\nmore\r\n"), "9 characters, not 3600");
  EXPECT_EQ(first_line(fields(721, "  -999")), "at least 4326 characters, not 3600");
  EXPECT_EQ(first_line(fields(719, "  -999") + "\n"), "4314 characters, not 3600");
  EXPECT_EQ(first_line(fields(721, "  -999") + "\n"), "4326 characters, not 3600");
}

TEST(DescribeOtherFile, SaysWhereAFileOfPartOfALineEnds) {
  EXPECT_EQ(describe_other_file("x", "some text"),
            "'x' is no condensed grid file: it ends in its first line, after 9 of 3600 "
            "characters");
}

}  // namespace
}  // namespace veldmark::extract
