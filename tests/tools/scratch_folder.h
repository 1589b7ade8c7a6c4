// A folder for the files of one test; it is gone when the test ends.

#ifndef VELDMARK_TESTS_TOOLS_SCRATCH_FOLDER_H_
#define VELDMARK_TESTS_TOOLS_SCRATCH_FOLDER_H_

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "support/stream_content.h"

namespace veldmark {

class ScratchFolder {
 public:
  ScratchFolder() {
    const ::testing::TestInfo* test =
        ::testing::UnitTest::GetInstance()->current_test_info();
    path_ = std::filesystem::path(::testing::TempDir()) /
            ("series_to_grid." + std::to_string(getpid()) + "." + test->name());
    std::filesystem::create_directories(path_);
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ScratchFolder(ScratchFolder&&) = delete;
  ScratchFolder& operator=(ScratchFolder&&) = delete;

  [[nodiscard]] std::string file(const std::string& name) const {
    return (path_ / name).string();
  }

  void put(const std::string& name, const std::string& content) const {
    std::ofstream(file(name), std::ios::binary) << content;
  }

  [[nodiscard]] std::string get(const std::string& name) const {
    std::ifstream input(file(name), std::ios::binary);
    return testing::stream_content(input);
  }

  // The names of all that is in the folder, in alphabetical order.
  [[nodiscard]] std::vector<std::string> names() const {
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) {
      found.push_back(entry.path().filename().string());
    }
    std::sort(found.begin(), found.end());
    return found;
  }

 private:
  std::filesystem::path path_;
};

using Names = std::vector<std::string>;

}  // namespace veldmark

#endif  // VELDMARK_TESTS_TOOLS_SCRATCH_FOLDER_H_
