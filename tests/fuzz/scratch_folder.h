// A folder for the files of a fuzz target, kept from one input to the next.

#ifndef VELDMARK_TESTS_FUZZ_SCRATCH_FOLDER_H_
#define VELDMARK_TESTS_FUZZ_SCRATCH_FOLDER_H_

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

#include "require.h"
#include "support/stream_content.h"

namespace veldmark::fuzz {

// Made in the folder for temporary files (TMPDIR), removed with all it holds at the
// end. A process that dies leaves it behind; `run` clears up after it.
class ScratchFolder {
 public:
  ScratchFolder() {
    std::string pattern =
        (std::filesystem::temp_directory_path() / "veldmark-fuzz-XXXXXX").string();
    require(::mkdtemp(pattern.data()) != nullptr, "a temporary folder can be made");
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

// The current folder is another one while this lives: a fuzzer's own file names are
// relative to the one it was started in.
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
  require(static_cast<bool>(file), "a file of the target can be written");
}

inline std::string read_file(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  require(file.is_open(), "there is a file of this name", path.native());
  return testing::stream_content(file);
}

}  // namespace veldmark::fuzz

#endif  // VELDMARK_TESTS_FUZZ_SCRATCH_FOLDER_H_
