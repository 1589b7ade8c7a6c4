#include "support/temporary_folder.h"

namespace veldmark::testing {

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
