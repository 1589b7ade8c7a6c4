// Folders and files for unit tests and fuzz targets. Throws std::runtime_error for what
// cannot be created or read.

#ifndef VELDMARK_TESTS_SUPPORT_SCRATCH_FOLDER_H_
#define VELDMARK_TESTS_SUPPORT_SCRATCH_FOLDER_H_

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

#include "support/stream_content.h"

namespace veldmark::testing {

// A new folder in the one for temporary files (TMPDIR). The destructor removes it with
// its content.
class ScratchFolder {
 public:
  ScratchFolder() {
    std::string pattern =
        (std::filesystem::temp_directory_path() / "veldmark-test-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) {
      throw std::runtime_error("no temporary folder: " + pattern);
    }
    path_ = pattern;
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

// Changes the current folder while this object exists.
class InFolder {
 public:
  explicit InFolder(const std::filesystem::path& path)
      : before_(std::filesystem::current_path()) {
    std::filesystem::current_path(path);
  }
  ~InFolder() {
    std::error_code ignored;
    std::filesystem::current_path(before_, ignored);
  }
  InFolder(const InFolder&) = delete;
  InFolder& operator=(const InFolder&) = delete;

 private:
  std::filesystem::path before_;
};

inline void write_file(const std::filesystem::path& path, std::string_view content) {
  std::ofstream file(path, std::ios::binary);
  file << content;
  file.close();
  if (!file) {
    throw std::runtime_error("not written: " + path.string());
  }
}

// Returns the content of a file.
inline std::string file_content(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file.is_open()) {
    throw std::runtime_error("no file to be read: " + path.string());
  }
  return stream_content(file);
}

}  // namespace veldmark::testing

#endif  // VELDMARK_TESTS_SUPPORT_SCRATCH_FOLDER_H_
