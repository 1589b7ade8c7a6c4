#include "output/output_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "support/fault_of.h"
#include "support/same_text.h"
#include "support/temporary_folder.h"

namespace veldmark {
namespace {

using testing::fault_of;
using testing::file_content;
using testing::same_text;
using testing::TemporaryFolder;
using testing::write_file;

TEST(OutputFile, HasTheContentThatWasWritten) {
  const TemporaryFolder folder;
  OutputFile file("out");
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
  EXPECT_TRUE(same_text(file_content("out"), expected + longer_than_any_buffer));
}

TEST(OutputFile, TruncatesAnExistingFileWhenItIsOpened) {
  const TemporaryFolder folder;
  write_file("out", "old content");
  OutputFile file("out");
  EXPECT_EQ(file_content("out"), "");
}

// Truncating it would make some file systems wait for the disk at its close.
TEST(OutputFile, DoesNotTruncateAnEmptyFile) {
  const TemporaryFolder folder;
  write_file("out", "");
  const auto long_ago =
      std::filesystem::last_write_time("out") - std::chrono::hours(24);
  std::filesystem::last_write_time("out", long_ago);
  const OutputFile file("out");
  EXPECT_EQ(std::filesystem::last_write_time("out"), long_ago);
}

const std::string kLargeContent(3 << 20, 'o');
constexpr uid_t kSomebodyElse = 65534;

// Returns the inode of a file, to tell whether it is still the same file.
ino_t inode_of(const std::string& name) {
  struct stat status {};
  EXPECT_EQ(::stat(name.c_str(), &status), 0);
  return status.st_ino;
}

TEST(OutputFile, TruncatesFilesOfAnySizeInPlace) {
  const TemporaryFolder folder;
  for (const std::size_t size : {std::size_t{1}, kLargeContent.size()}) {
    write_file("out", std::string(size, 'o'));
    const ino_t before = inode_of("out");
    const OutputFile file("out");
    EXPECT_EQ(inode_of("out"), before) << size;
    EXPECT_EQ(file_content("out"), "") << size;
  }
}

TEST(OutputFile, KeepsOwnerGroupAndPermissionsOfTheFile) {
  const TemporaryFolder folder;
  write_file("out", kLargeContent);
  if (::geteuid() == 0) {
    ASSERT_EQ(::chown("out", kSomebodyElse, kSomebodyElse - 1), 0);
  }
  ASSERT_EQ(::chmod("out", 0640), 0);
  struct stat before {};
  ASSERT_EQ(::stat("out", &before), 0);
  OutputFile file("out");
  file.write("new");
  file.close();
  struct stat after {};
  ASSERT_EQ(::stat("out", &after), 0);
  EXPECT_EQ(after.st_uid, before.st_uid);
  EXPECT_EQ(after.st_gid, before.st_gid);
  EXPECT_EQ(after.st_mode, before.st_mode);
}

// An access list in the kernel's format: a version, then entries of tag, permissions
// and id, all little-endian. The owner and user 12345 may read and write, the group may
// read.
std::string access_list() {
  struct Entry {
    std::uint16_t kind;
    std::uint16_t rights;
    std::uint32_t id;
  };
  constexpr std::uint32_t kNoId = 0xFFFFFFFF;
  constexpr std::array<Entry, 5> kEntries{{{0x01, 6, kNoId},
                                           {0x02, 6, 12345},
                                           {0x04, 4, kNoId},
                                           {0x10, 6, kNoId},
                                           {0x20, 0, kNoId}}};
  const std::uint32_t version = 2;
  std::string text(sizeof version + sizeof kEntries, '\0');
  std::memcpy(text.data(), &version, sizeof version);
  std::memcpy(text.data() + sizeof version, kEntries.data(), sizeof kEntries);
  return text;
}

// Returns the value of an extended attribute; nullopt if the file does not have it.
std::optional<std::string> attribute(const char* file, const char* name) {
  std::array<char, 256> value{};
  const ssize_t size = ::getxattr(file, name, value.data(), value.size());
  if (size < 0) {
    return std::nullopt;
  }
  return std::string(value.data(), static_cast<std::size_t>(size));
}

void expect_attribute_kept(const char* name, const std::string& value) {
  const TemporaryFolder folder;
  write_file("out", kLargeContent);
  if (::setxattr("out", name, value.data(), value.size(), 0) != 0) {
    GTEST_SKIP() << "the file system of " << folder.path() << " has no " << name;
  }
  const std::optional<std::string> before = attribute("out", name);
  OutputFile file("out");
  file.write("new");
  file.close();
  ASSERT_TRUE(before);
  EXPECT_EQ(attribute("out", name), before);
}

TEST(OutputFile, KeepsTheAccessListOfTheFile) {
  expect_attribute_kept("system.posix_acl_access", access_list());
}

TEST(OutputFile, KeepsTheExtendedAttributesOfTheFile) {
  expect_attribute_kept("user.source", "station 12");
}

TEST(OutputFile, CreatesANewFileWithTheUsualPermissions) {
  const TemporaryFolder folder;
  const mode_t mask = ::umask(0027);
  const OutputFile file("out");
  ::umask(mask);
  EXPECT_EQ(std::filesystem::status("out").permissions(),
            static_cast<std::filesystem::perms>(0640));
}

// Every write is a system call, so a file is written in few large blocks.
TEST(OutputFile, BuffersAQuarterOfAMegabyte) {
  const TemporaryFolder folder;
  constexpr std::size_t kHeldBack = 256 * 1024;
  OutputFile file("out");
  file.write(std::string(kHeldBack / 2, 'x'));
  file.write(std::string(kHeldBack / 4, 'x'));
  EXPECT_EQ(std::filesystem::file_size("out"), 0U);
  file.write(std::string(kHeldBack / 4, 'x') + "y");
  EXPECT_EQ(std::filesystem::file_size("out"), kHeldBack);
  file.close();
  EXPECT_EQ(file_content("out"), std::string(kHeldBack, 'x') + "y");
}

// Returns whether `holds` is true for a user without root's rights.
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

TEST(OutputFile, DoesNotChangeALargeProtectedFile) {
  const TemporaryFolder folder;
  write_file("out", kLargeContent);
  std::filesystem::permissions("out", std::filesystem::perms::owner_read);
  std::filesystem::permissions(".", std::filesystem::perms::all);
  if (::geteuid() == 0) {
    ASSERT_EQ(::chown("out", kSomebodyElse, kSomebodyElse), 0);
  }
  EXPECT_TRUE(holds_for_an_ordinary_user([] {
    const auto create = [] { const OutputFile file("out"); };
    return fault_of(create) == "not opened: out: Permission denied";
  }));
  EXPECT_EQ(file_content("out"), kLargeContent);
}

// The content must not be lost when no descriptor is free.
#ifndef __SANITIZE_ADDRESS__  // whose check of objects needs descriptors itself
TEST(OutputFile, KeepsOldContentIfItCannotBeOpened) {
  const TemporaryFolder folder;
  write_file("out", kLargeContent);
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
  const rlimit none{.rlim_cur = 0, .rlim_max = before.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
  const std::string fault = fault_of([] { const OutputFile file("out"); });
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
  EXPECT_EQ(fault, "not opened: out: Too many open files");
  EXPECT_TRUE(file_content("out") == kLargeContent);
}
#endif

TEST(OutputFile, DoesNotTruncateAFileInUseThroughALink) {
  const TemporaryFolder folder;
  write_file("data", "values");
  std::filesystem::create_symlink("data", "symbolic");
  std::filesystem::create_hard_link("data", "hard");
  FilesInUse in_use;
  in_use.add(regular_file("data"));
  for (const std::string name : {"data", "symbolic", "hard"}) {
    EXPECT_EQ(fault_of([&] { const OutputFile file(name, in_use); }),
              "not opened: " + name);
    EXPECT_EQ(file_content("data"), "values") << name;
  }
}

// Two descriptors of one process lock a file against each other like two processes.
TEST(OutputFile, DoesNotTruncateAFileThatAnotherRunIsWriting) {
  const TemporaryFolder folder;
  OutputFile first("out");
  first.write(std::string(1 << 19, 'x'));
  const std::string written = file_content("out");
  EXPECT_EQ(fault_of([] { const OutputFile second("out"); }),
            "written by another run: out");
  EXPECT_TRUE(file_content("out") == written);
  first.close();
  OutputFile second("out");
  EXPECT_EQ(file_content("out"), "");
}

TEST(OutputFile, IsUnlockedWhenTheRunEndsEarly) {
  const TemporaryFolder folder;
  {
    OutputFile file("out");
    file.write("begun");
  }
  EXPECT_EQ(fault_of([] { const OutputFile file("out"); }), "no fault");
}

// Opening the pipe would block; then the alarm ends the test.
TEST(OutputFile, RefusesAPipe) {
  const TemporaryFolder folder;
  ASSERT_EQ(::mkfifo("out", 0666), 0);
  ::alarm(20);
  EXPECT_EQ(fault_of([] { const OutputFile file("out"); }), "not opened: out");
  ::alarm(0);
}

TEST(OutputFile, MayBeADeviceThatIsUsedTwice) {
  // Through links, so that a bug cannot remove the device itself.
  const TemporaryFolder folder;
  std::filesystem::create_symlink("/dev/null", "one");
  std::filesystem::create_symlink("/dev/null", "two");
  OutputFile first("one");
  FilesInUse in_use;
  in_use.add(first.identity());
  OutputFile second("two", in_use);
  first.write("text");
  second.write("text");
  first.close();
  second.close();
}

TEST(OutputFile, WritesThroughLinksToLargeFiles) {
  const TemporaryFolder folder;
  write_file("target", kLargeContent);
  std::filesystem::create_symlink("target", "out");
  const auto before = std::filesystem::status("target").permissions();
  OutputFile file("out");
  file.write("new");
  file.close();
  EXPECT_TRUE(std::filesystem::is_symlink("out"));
  EXPECT_EQ(file_content("target"), "new");
  EXPECT_EQ(std::filesystem::status("target").permissions(), before);
}

TEST(OutputFile, KeepsTheHardLinksOfALargeFile) {
  const TemporaryFolder folder;
  write_file("other", kLargeContent);
  std::filesystem::create_hard_link("other", "out");
  OutputFile file("out");
  file.write("new");
  file.close();
  EXPECT_EQ(file_content("other"), "new");
}

TEST(OutputFile, FlushesWhenTheRunEndsEarly) {
  const TemporaryFolder folder;
  {
    OutputFile file("out");
    file.write("begun");
  }
  EXPECT_EQ(file_content("out"), "begun");
}

TEST(OutputFile, ThrowsIfItCannotBeCreated) {
  const TemporaryFolder folder;
  EXPECT_EQ(fault_of([] { const OutputFile file("no/such"); }),
            "not opened: no/such: No such file or directory");
}

TEST(OutputFile, ThrowsOnAFullDiskWhenItIsClosed) {
  OutputFile file("/dev/full");
  file.write("text");
  EXPECT_EQ(fault_of([&] { file.close(); }),
            "not written: /dev/full: No space left on device");
}

TEST(OutputFile, ThrowsOnAFullDiskAtALargeWrite) {
  OutputFile file("/dev/full");
  const std::string large(1 << 19, 'x');
  EXPECT_EQ(fault_of([&] { file.write(large); }),
            "not written: /dev/full: No space left on device");
}

}  // namespace
}  // namespace veldmark
