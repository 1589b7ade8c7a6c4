#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <fstream>

#include "support/stream_content.h"

namespace veldmark::testing {

TemporaryFolder::TemporaryFolder() : before_(std::filesystem::current_path()) {
  std::string pattern =
      (std::filesystem::temp_directory_path() / "veldmark-test-XXXXXX").string();
  if (::mkdtemp(pattern.data()) == nullptr) {
    ADD_FAILURE() << "no temporary folder: " << pattern;
    return;
  }
  path_ = pattern;
  std::filesystem::current_path(path_);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::current_path(before_, ignored);
  std::filesystem::remove_all(path_, ignored);
}

std::string file_content(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << path;
  return stream_content(file);
}

void write_file(const std::filesystem::path& path, std::string_view content) {
  std::ofstream file(path, std::ios::binary);
  file << content;
  file.close();
  EXPECT_TRUE(file) << path;
}

std::map<std::string, std::string> folder_content() {
  std::map<std::string, std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(".")) {
    files[entry.path().filename().string()] =
        entry.is_directory() ? "" : file_content(entry.path());
  }
  return files;
}

std::map<std::string, FolderEntry> folder_entries() {
  std::map<std::string, FolderEntry> entries;
  for (const auto& entry : std::filesystem::directory_iterator(".")) {
    const std::filesystem::file_status status = entry.symlink_status();
    const bool is_file = status.type() == std::filesystem::file_type::regular;
    entries[entry.path().filename().string()] = {
        status.type(), status.permissions(), is_file ? file_content(entry.path()) : ""};
  }
  return entries;
}

}  // namespace veldmark::testing
