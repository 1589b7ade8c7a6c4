// Files that are not complete condensed grid files: the message describes each.

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "extract/file_kind.h"
#include "extract/run.h"
#include "support/grid_text.h"
#include "support/temporary_folder.h"

namespace veldmark::extract {
namespace {

using namespace std::string_view_literals;
using veldmark::testing::file_content;
using veldmark::testing::GridText;
using veldmark::testing::TemporaryFolder;
using veldmark::testing::write_file;

constexpr const char* kName = "cru_ts4.09.2023.2024.tmp.dat.new";
constexpr const char* kPart = "x.csv";
constexpr std::size_t kLine = 3601;
constexpr std::size_t kYear = 4320 * kLine;

struct Outcome {
  int status = -1;
  std::string messages;
};

Outcome run(const std::vector<std::string>& more = {}) {
  std::vector<std::string> arguments{
      kName, "--cell", "60.25,-139.75", "--quiet", "--wide", "-o", kPart};
  arguments.insert(arguments.end(), more.begin(), more.end());
  std::ostringstream output;
  std::ostringstream messages;
  const int status = run_extract(
      arguments, {.input = -1, .output = output, .messages = {.stream = messages}});
  return {status, messages.str()};
}

// What is said of a file with that content; nothing may be written.
std::string refusal_of(std::string_view content,
                       const std::vector<std::string>& more = {}) {
  write_file(kName, content);
  const Outcome outcome = run(more);
  EXPECT_EQ(outcome.status, 1);
  EXPECT_FALSE(std::filesystem::exists(kPart));
  const std::string begin = "veldmark-extract: '" + std::string(kName) + "'";
  EXPECT_TRUE(outcome.messages.starts_with(begin)) << outcome.messages;
  EXPECT_TRUE(outcome.messages.ends_with("\n"));
  return outcome.messages.substr(begin.size(),
                                 outcome.messages.size() - begin.size() - 1);
}

// Two years of the sizes of real ones.
class InputKinds : public ::testing::Test {
 protected:
  static const std::string& whole_text() {
    static const std::string text = [] {
      GridText grid(1902, 1, 360, -999);
      for (int month = 0; month < 24; ++month) {
        grid.set_value(1901 + month / 12, month % 12 + 1, 301, 81, 100 + month);
      }
      return grid.text();
    }();
    return text;
  }

  TemporaryFolder folder_;
};

TEST_F(InputKinds, AnotherReleaseIsRead) {
  write_file(kName, whole_text());
  EXPECT_EQ(run({"--years", "2024"}).status, 0);
  EXPECT_EQ(file_content(kPart),
            "lat,lon,year,jan,feb,mar,apr,may,jun,jul,aug,sep,oct,nov,dec\n"
            "60.25,-139.75,2024,11.2,11.3,11.4,11.5,11.6,11.7,11.8,11.9,12.0,12.1,12.2,"
            "12.3\n");
}

TEST_F(InputKinds, ATruncatedFileIsRefusedWhereverItWasCut) {
  const std::string& text = whole_text();
  const std::string end =
      " bytes more, and a year has 15556320; tersify --check tells more";
  EXPECT_EQ(refusal_of(text.substr(0, kLine)),
            " is cut or damaged: after 0 whole years it has 3601" + end);
  EXPECT_EQ(refusal_of(text.substr(0, kYear + kLine / 2)),
            " is cut or damaged: after 1 whole years it has 1800" + end);
  EXPECT_EQ(refusal_of(text.substr(0, 2 * kYear - kLine)),
            " is cut or damaged: after 1 whole years it has 15552719" + end);
  EXPECT_EQ(refusal_of(text.substr(0, 2 * kYear - 2)),
            " is cut or damaged: after 1 whole years it has 15556318" + end);
  EXPECT_EQ(refusal_of(text.substr(0, kLine - 1)),
            " is no condensed grid file: it ends in its first line, after 3600 of 3600 "
            "characters");
}

TEST_F(InputKinds, AFileWithoutItsLastYearDisagreesWithItsName) {
  EXPECT_EQ(refusal_of(whole_text().substr(0, kYear)),
            ": the name says 2023-2024, but the file holds 1 year; with --first-year "
            "2023 it is taken as 2023-2023");
}

TEST_F(InputKinds, AFileThatIsTooLongIsRefused) {
  const std::string& text = whole_text();
  const std::string end =
      " bytes more, and a year has 15556320; tersify --check tells more";
  EXPECT_EQ(refusal_of(text + "\n"),
            " is cut or damaged: after 2 whole years it has 1" + end);
  EXPECT_EQ(refusal_of(text + text.substr(0, kLine)),
            " is cut or damaged: after 2 whole years it has 3601" + end);
  EXPECT_EQ(refusal_of(text + text.substr(0, kYear)),
            ": the name says 2023-2024, but the file holds 3 years; with --first-year "
            "2023 it is taken as 2023-2025");
}

TEST_F(InputKinds, ACompressedFileNamesTheToolForIt) {
  EXPECT_EQ(refusal_of("\x1f\x8b\x08 rest"),
            " is compressed: decompress it with gzip -d (tersify condenses a published "
            "file as it is)");
  EXPECT_EQ(refusal_of("BZh9 rest"), " is compressed: decompress it with bzip2 -d");
  EXPECT_EQ(refusal_of("\xfd"
                       "7zXZ rest"),
            " is compressed: decompress it with xz -d");
  EXPECT_EQ(refusal_of("\x28\xb5\x2f\xfd rest"),
            " is compressed: decompress it with zstd -d");
  EXPECT_EQ(refusal_of("PK\x03\x04 rest"), " is an archive: unpack it with unzip");
}

TEST_F(InputKinds, ANetcdfFileIsRefused) {
  const std::string end = ", no condensed grid file; tersify condenses published ones";
  EXPECT_EQ(refusal_of("CDF\x01\x00\x00"sv), " is a netCDF file" + end);
  EXPECT_EQ(refusal_of("\x89HDF\r\n\x1a\n"), " is a netCDF-4 or HDF5 file" + end);
}

TEST_F(InputKinds, OtherFilesAreDescribed) {
  EXPECT_EQ(refusal_of(""), " is empty");
  EXPECT_EQ(refusal_of("\x7f"
                       "ELF\x00\x01"sv),
            " is a binary file, no condensed grid file");
  EXPECT_EQ(refusal_of("a text\r\nmore\r\n"),
            " is no condensed grid file: its first line has 6 characters, not 3600");
  EXPECT_EQ(refusal_of(std::string(3601, ' ') + "\n"),
            " is no condensed grid file: its first line has 3601 characters, not 3600");
  EXPECT_EQ(refusal_of(std::string(20000, ' ')),
            " is no condensed grid file: its first line has at least 16384 characters, "
            "not 3600");
}

TEST_F(InputKinds, APublishedFileIsReferredToTersify) {
  std::string line;
  for (int column = 0; column < 720; ++column) {
    line += column % 2 == 0 ? "  -999" : " 12345";
  }
  for (const std::string line_end : {"\n", "\r\n", " \n"}) {
    EXPECT_EQ(
        refusal_of(line + line_end),
        " is in the published form: condense it with tersify " + std::string(kName));
  }
  EXPECT_EQ(refusal_of(line + " 1\n"),
            " is no condensed grid file: its first line has 4322 characters, not 3600");
}

}  // namespace
}  // namespace veldmark::extract
