// A new folder that is the current one while a test runs.

#ifndef VELDMARK_TESTS_SUPPORT_TEMPORARY_FOLDER_H_
#define VELDMARK_TESTS_SUPPORT_TEMPORARY_FOLDER_H_

#include <filesystem>
#include <map>
#include <string>

#include "support/scratch_folder.h"

namespace veldmark::testing {

// The constructor creates and enters the folder; the destructor leaves it and removes
// it with its content.
class TemporaryFolder {
 public:
  [[nodiscard]] const std::filesystem::path& path() const { return folder_.path(); }

 private:
  ScratchFolder folder_;
  InFolder in_folder_{folder_.path()};
};

// Returns every file of the current folder with its content, by name; folders with "".
std::map<std::string, std::string> folder_content();

// An entry of a folder.
struct FolderEntry {
  std::filesystem::file_type type = std::filesystem::file_type::none;
  std::filesystem::perms mode = std::filesystem::perms::none;
  std::string content;  // of a plain file

  bool operator==(const FolderEntry&) const = default;
};

// Returns every entry of the current folder, by name. Links are not followed.
std::map<std::string, FolderEntry> folder_entries();

}  // namespace veldmark::testing

#endif  // VELDMARK_TESTS_SUPPORT_TEMPORARY_FOLDER_H_
