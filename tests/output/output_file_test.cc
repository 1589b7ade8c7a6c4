#include "output/output_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>

#include "support/temporary_folder.h"

namespace veldmark {
namespace {

using testing::file_content;
using testing::TemporaryFolder;
using testing::write_file;

std::string report_of(const std::function<void()>& action) {
  try {
    action();
  } catch (const RunEnd& end) {
    EXPECT_EQ(end.status(), 255);
    return end.report();
  }
  return "no end";
}

TEST(OutputFile, HoldsWhatWasWritten) {
  const TemporaryFolder folder;
  OutputFile file("out", Channel::kTimeSeries);
  std::string expected;
  for (int i = 0; i < 100000; ++i) {
    const std::string line = std::to_string(i) + " line\n";
    file.write(line);
    expected += line;
  }
  const std::string longer_than_any_buffer(1 << 20, 'x');
  file.write(longer_than_any_buffer);
  file.close();
  file.close();
  EXPECT_EQ(file_content("out"), expected + longer_than_any_buffer);
}

TEST(OutputFile, ReplacesAnExistingFileWhenItIsOpened) {
  const TemporaryFolder folder;
  write_file("out", "old content");
  OutputFile file("out", Channel::kTimeSeries);
  EXPECT_EQ(file_content("out"), "");
}

const std::string kLargeContent(3 << 20, 'o');

TEST(OutputFile, ReplacesALargeFileAndKeepsItsPermissions) {
  const TemporaryFolder folder;
  write_file("out", kLargeContent);
  std::filesystem::permissions("out", std::filesystem::perms::owner_all);
  OutputFile file("out", Channel::kTimeSeries);
  EXPECT_EQ(file_content("out"), "");
  EXPECT_EQ(std::filesystem::status("out").permissions(),
            std::filesystem::perms::owner_all);
}

TEST(OutputFile, WritesThroughLinksToLargeFiles) {
  const TemporaryFolder folder;
  write_file("target", kLargeContent);
  std::filesystem::create_symlink("target", "out");
  OutputFile file("out", Channel::kTimeSeries);
  file.write("new");
  file.close();
  EXPECT_TRUE(std::filesystem::is_symlink("out"));
  EXPECT_EQ(file_content("target"), "new");
}

TEST(OutputFile, KeepsTheOtherNamesOfALargeFile) {
  const TemporaryFolder folder;
  write_file("other", kLargeContent);
  std::filesystem::create_hard_link("other", "out");
  OutputFile file("out", Channel::kTimeSeries);
  file.write("new");
  file.close();
  EXPECT_EQ(file_content("other"), "new");
}

TEST(OutputFile, KeepsWhatWasWrittenWhenTheRunEndsOtherwise) {
  const TemporaryFolder folder;
  {
    OutputFile file("out", Channel::kTimeSeries);
    file.write("begun");
  }
  EXPECT_EQ(file_content("out"), "begun");
}

TEST(OutputFile, ThatCannotBeCreatedEndsTheRun) {
  const TemporaryFolder folder;
  EXPECT_EQ(report_of([] { const OutputFile file("no/such", Channel::kCellList); }),
            "Run-time error:\nCannot open file: no/such\n? OPEN(UNIT=15,...\n");
}

TEST(OutputFile, OnAFullDiskEndsTheRunBeforeItIsClosed) {
  OutputFile file("/dev/full", Channel::kTimeSeries);
  file.write("text");
  EXPECT_EQ(report_of([&] { file.close(); }),
            "Run-time error:\nCannot write file: /dev/full: No space left on device\n"
            "? WRITE(UNIT=14,...\n");
}

TEST(OutputFile, OnAFullDiskEndsTheRunAtALargeWrite) {
  OutputFile file("/dev/full", Channel::kVarianceReport);
  const std::string large(1 << 19, 'x');
  EXPECT_EQ(report_of([&] { file.write(large); }),
            "Run-time error:\nCannot write file: /dev/full: No space left on device\n"
            "? WRITE(UNIT=16,...\n");
}

}  // namespace
}  // namespace veldmark
