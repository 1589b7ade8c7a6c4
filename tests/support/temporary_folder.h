// A fresh folder that is the current one while a test runs.

#ifndef VELDMARK_TESTS_SUPPORT_TEMPORARY_FOLDER_H_
#define VELDMARK_TESTS_SUPPORT_TEMPORARY_FOLDER_H_

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

namespace veldmark::testing {

// Makes the folder and enters it; leaves and removes it, with all it holds, at the end.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path before_;
  std::filesystem::path path_;
};

// The whole content of a file; fails the test when there is no such file.
std::string file_content(const std::filesystem::path& path);

void write_file(const std::filesystem::path& path, std::string_view content);

// Every file of the current folder with its content, by name; folders with "".
std::map<std::string, std::string> folder_content();

// What a folder holds under a name.
struct FolderEntry {
  std::filesystem::file_type type = std::filesystem::file_type::none;
  std::filesystem::perms mode = std::filesystem::perms::none;
  std::string content;  // of a plain file

  bool operator==(const FolderEntry&) const = default;
};

// Every entry of the current folder, by name. Links are not followed.
std::map<std::string, FolderEntry> folder_entries();

}  // namespace veldmark::testing

#endif  // VELDMARK_TESTS_SUPPORT_TEMPORARY_FOLDER_H_
