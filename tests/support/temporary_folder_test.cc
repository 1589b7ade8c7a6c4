#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace veldmark::testing {
namespace {

TEST(FolderEntries, TellKindsModesAndContent) {
  const TemporaryFolder folder;
  std::filesystem::create_directory("folder");
  write_file("empty", "");
  write_file("text", "a\n");
  write_file("closed", "");
  std::filesystem::permissions("closed", std::filesystem::perms::owner_read);
  std::filesystem::create_symlink("nowhere", "link");

  const std::map<std::string, FolderEntry> entries = folder_entries();
  EXPECT_EQ(entries.size(), 5U);
  EXPECT_EQ(entries.at("folder").type, std::filesystem::file_type::directory);
  EXPECT_EQ(entries.at("link").type, std::filesystem::file_type::symlink);
  EXPECT_EQ(entries.at("empty").type, std::filesystem::file_type::regular);
  EXPECT_EQ(entries.at("text").content, "a\n");
  EXPECT_FALSE(entries.at("empty") == entries.at("folder"));
  EXPECT_FALSE(entries.at("empty") == entries.at("closed"));
}

}  // namespace
}  // namespace veldmark::testing
