#include "output/output_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "support/report_of.h"
#include "support/temporary_folder.h"

namespace veldmark {
namespace {

using testing::file_content;
using testing::report_of;
using testing::TemporaryFolder;
using testing::write_file;

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
constexpr uid_t kSomebodyElse = 65534;

TEST(OutputFile, ReplacesALargeFileAndKeepsItsPermissions) {
  const TemporaryFolder folder;
  write_file("out", kLargeContent);
  std::filesystem::permissions("out", std::filesystem::perms::owner_all);
  OutputFile file("out", Channel::kTimeSeries);
  EXPECT_EQ(file_content("out"), "");
  EXPECT_EQ(std::filesystem::status("out").permissions(),
            std::filesystem::perms::owner_all);
}

// Is the file that `descriptor` shows still in a folder?
bool has_a_name(const FileDescriptor& descriptor) {
  struct stat status {};
  EXPECT_EQ(::fstat(descriptor.get(), &status), 0);
  return status.st_nlink > 0;
}

TEST(OutputFile, RemovesFilesOfAMegabyteAndEmptiesSmallerOnes) {
  const TemporaryFolder folder;
  constexpr std::size_t kMegabyte = 1024 * 1024;
  write_file("large", std::string(kMegabyte, 'o'));
  write_file("small", std::string(kMegabyte - 1, 'o'));
  const FileDescriptor large("large", O_RDONLY);
  const FileDescriptor small("small", O_RDONLY);
  const OutputFile new_large("large", Channel::kTimeSeries);
  const OutputFile new_small("small", Channel::kTimeSeries);
  EXPECT_FALSE(has_a_name(large));
  EXPECT_TRUE(has_a_name(small));
  EXPECT_EQ(file_content("large"), "");
  EXPECT_EQ(file_content("small"), "");
}

TEST(OutputFile, GetsTheUsualPermissionsWhereThereWasNoFile) {
  const TemporaryFolder folder;
  const mode_t mask = ::umask(0027);
  const OutputFile file("out", Channel::kTimeSeries);
  ::umask(mask);
  EXPECT_EQ(std::filesystem::status("out").permissions(),
            static_cast<std::filesystem::perms>(0640));
}

// Every write costs a call to the system: a file is written in few large pieces.
TEST(OutputFile, HoldsBackAQuarterOfAMegabyte) {
  const TemporaryFolder folder;
  constexpr std::size_t kHeldBack = 256 * 1024;
  OutputFile file("out", Channel::kTimeSeries);
  file.write(std::string(kHeldBack / 2, 'x'));
  file.write(std::string(kHeldBack / 4, 'x'));
  EXPECT_EQ(std::filesystem::file_size("out"), 0U);
  file.write(std::string(kHeldBack / 4, 'x') + "y");
  EXPECT_EQ(std::filesystem::file_size("out"), kHeldBack);
  file.close();
  EXPECT_EQ(file_content("out"), std::string(kHeldBack, 'x') + "y");
}

TEST(OutputFile, DoesNotRemoveALargeFileOfSomebodyElse) {
  if (::geteuid() != 0) {
    GTEST_SKIP() << "only root can give files away";
  }
  const TemporaryFolder folder;
  write_file("out", kLargeContent);
  ASSERT_EQ(::chown("out", kSomebodyElse, kSomebodyElse), 0);
  const FileDescriptor before("out", O_RDONLY);
  const OutputFile file("out", Channel::kTimeSeries);
  EXPECT_TRUE(has_a_name(before));
  EXPECT_EQ(file_content("out"), "");
}

// Is `holds` true for a user whom files are protected from?
bool holds_for_an_ordinary_user(const std::function<bool()>& holds) {
  const pid_t child = ::fork();
  if (child == 0) {
    const bool ordinary = ::geteuid() != 0 || ::setuid(kSomebodyElse) == 0;
    ::_exit(ordinary && holds() ? 0 : 1);
  }
  int status = -1;
  EXPECT_EQ(::waitpid(child, &status, 0), child);
  return status == 0;
}

TEST(OutputFile, LeavesALargeProtectedFileAlone) {
  const TemporaryFolder folder;
  write_file("out", kLargeContent);
  std::filesystem::permissions("out", std::filesystem::perms::owner_read);
  std::filesystem::permissions(".", std::filesystem::perms::all);
  if (::geteuid() == 0) {
    ASSERT_EQ(::chown("out", kSomebodyElse, kSomebodyElse), 0);
  }
  EXPECT_TRUE(holds_for_an_ordinary_user([] {
    const auto create = [] { const OutputFile file("out", Channel::kTimeSeries); };
    return report_of(create) ==
           "Run-time error:\nCannot open file: out\n? OPEN(UNIT=14,...\n";
  }));
  EXPECT_EQ(file_content("out"), kLargeContent);
}

TEST(OutputFile, WritesThroughLinksToLargeFiles) {
  const TemporaryFolder folder;
  write_file("target", kLargeContent);
  std::filesystem::create_symlink("target", "out");
  const auto before = std::filesystem::status("target").permissions();
  OutputFile file("out", Channel::kTimeSeries);
  file.write("new");
  file.close();
  EXPECT_TRUE(std::filesystem::is_symlink("out"));
  EXPECT_EQ(file_content("target"), "new");
  EXPECT_EQ(std::filesystem::status("target").permissions(), before);
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
