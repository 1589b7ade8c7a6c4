// Runs a fuzz target on kept inputs, without a fuzzer.
//
//   PROGRAM FILE_OR_FOLDER...
//
// Each input is named before it is run: the last one named is the one at fault.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "scratch_folder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::filesystem::path> files_of(const std::filesystem::path& path) {
  if (!std::filesystem::is_directory(path)) return {path};
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(path)) {
    files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

// The bytes go into memory of just their size, so that reading beyond them is noticed.
void run_input(const std::filesystem::path& file) {
  std::printf("%s\n", file.c_str());
  std::fflush(stdout);
  const std::string content = veldmark::fuzz::read_file(file);
  const std::vector<std::uint8_t> bytes(content.begin(), content.end());
  LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

}  // namespace

int main(int argc, char** argv) {
  std::size_t count = 0;
  for (int i = 1; i < argc; ++i) {
    for (const std::filesystem::path& file : files_of(argv[i])) {
      run_input(file);
      ++count;
    }
  }
  std::printf("%zu inputs\n", count);
  if (count == 0) {
    std::fprintf(stderr, "no inputs to run\n");
    return 1;
  }
  return 0;
}
