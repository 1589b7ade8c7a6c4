#include "tersify/disk_space.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdint>
#include <filesystem>
#include <limits>
#include <string>

#include "support/temporary_folder.h"
#include "util/failure.h"

namespace veldmark::tersify {
namespace {

using veldmark::testing::TemporaryFolder;
using veldmark::testing::write_file;

// Returns the message about the disk space for "copy"; "" if it is enough.
std::string verdict(std::optional<std::int64_t> needed,
                    std::optional<std::int64_t> unused) {
  try {
    expect_disk_space("copy", needed, [&](const std::string&) { return unused; });
    return "";
  } catch (const Failure& error) {
    return error.what();
  }
}

TEST(DiskSpace, ExactlyEnoughIsEnough) {
  const TemporaryFolder folder;
  EXPECT_EQ(verdict(1000, 1000), "");
  EXPECT_EQ(
      verdict(1000, 999),
      "not enough disk space for 'copy': it takes about 1000 bytes, and 999 are free");
}

TEST(DiskSpace, UnknownSizesAreNotRefused) {
  const TemporaryFolder folder;
  EXPECT_EQ(verdict(1000, std::nullopt), "");
  EXPECT_EQ(verdict(std::nullopt, 0), "");
}

TEST(DiskSpace, AnAbandonedPartCountsAsFree) {
  const TemporaryFolder folder;
  write_file("copy.part", std::string(200'000, 'x'));
  struct stat found {};
  ASSERT_EQ(::stat("copy.part", &found), 0);
  const std::int64_t occupied = found.st_blocks * 512;
  ASSERT_GE(occupied, 100'000);
  EXPECT_EQ(verdict(1000 + occupied, 1000), "");
  EXPECT_NE(verdict(1001 + occupied, 1000), "");
}

TEST(DiskSpace, TheTargetOfALinkDoesNotCountAsFree) {
  const TemporaryFolder folder;
  write_file("thesis", std::string(200'000, 'x'));
  std::filesystem::create_symlink("thesis", "copy.part");
  EXPECT_NE(verdict(10'000, 1000), "");
}

TEST(DiskSpace, IsQueriedForTheFolderOfTheCopy) {
  std::string asked;
  const auto note = [&](const std::string& folder) -> std::optional<std::int64_t> {
    asked = folder;
    return std::nullopt;
  };
  expect_disk_space("data/copy", 1, note);
  EXPECT_EQ(asked, "data");
  expect_disk_space("copy", 1, note);
  EXPECT_EQ(asked, ".");
}

TEST(DiskSpace, SystemFreeSpaceIsThatOfTheFolder) {
  EXPECT_GT(system_free_space(".").value_or(0), 0);
  EXPECT_EQ(system_free_space("/no such folder"), std::nullopt);
}

TEST(FreeBytes, AreTheBlocksAvailableToTheUser) {
  struct statvfs system {};
  system.f_blocks = 100;
  system.f_bfree = 50;
  system.f_bavail = 40;
  system.f_bsize = 65536;
  system.f_frsize = 4096;
  EXPECT_EQ(free_bytes(system), 40 * 4096);
}

TEST(FreeBytes, AFileSystemWithoutASizeIsUnknownNotFull) {
  struct statvfs system {};
  system.f_frsize = 4096;
  EXPECT_EQ(free_bytes(system), std::nullopt);
  struct statvfs without_block_size {};
  without_block_size.f_blocks = 100;
  EXPECT_EQ(free_bytes(without_block_size), std::nullopt);
}

TEST(FreeBytes, AreNeverNegative) {
  struct statvfs system {};
  system.f_frsize = 4096;
  system.f_blocks = std::numeric_limits<std::uint64_t>::max() / 4096;
  system.f_bavail = system.f_blocks;
  const std::int64_t most = std::numeric_limits<std::int64_t>::max();
  EXPECT_EQ(free_bytes(system), most / 4096 * 4096);
  const TemporaryFolder folder;
  write_file("copy.part", std::string(200'000, 'x'));
  EXPECT_EQ(verdict(1000, most), "");
}

TEST(ExpectedSize, IsEstimatedFromTheFirstLines) {
  EXPECT_EQ(expected_size("12345\n12345\n123", 600), 100 * 3601);
  EXPECT_EQ(expected_size("12345", 5), std::nullopt);
}

}  // namespace
}  // namespace veldmark::tersify
