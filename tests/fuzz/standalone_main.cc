// Runs a fuzz target on inputs, without a fuzzer.
//
//   PROGRAM FILE_OR_FOLDER...
//   PROGRAM --corpus TARGET CORPUS
//
// The name of each input is printed before it runs: after a crash, the last one is the
// cause. At the end the counts of what was reached are printed. The second form replays
// the corpus CORPUS/TARGET: at most 60 inputs with descriptive names, which together
// must reach the counts in CORPUS/least_reached.txt.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "reached.h"
#include "support/scratch_folder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using veldmark::fuzz::ReachedCounts;

constexpr std::size_t kMaxInputs = 60;
constexpr std::size_t kHashLength = 40;  // of the names that the fuzzer generates

std::vector<std::filesystem::path> files_of(const std::filesystem::path& path) {
  if (!std::filesystem::is_directory(path)) return {path};
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(path)) {
    files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

// Copies the bytes into a buffer of exactly their size, so that overruns are detected.
void run_input(const std::filesystem::path& file) {
  std::printf("%s\n", file.c_str());
  std::fflush(stdout);
  const std::string content = veldmark::testing::file_content(file);
  const std::vector<std::uint8_t> bytes(content.begin(), content.end());
  LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

// Returns how many inputs were run.
std::size_t run_inputs(const std::vector<std::filesystem::path>& files) {
  for (const std::filesystem::path& file : files) {
    run_input(file);
  }
  std::printf("%zu inputs\n", files.size());
  for (const auto& [what, count] : veldmark::fuzz::reached_counts()) {
    std::printf("%zu %s\n", count, what.c_str());
  }
  return files.size();
}

bool has_descriptive_name(const std::filesystem::path& file) {
  const std::string name = file.filename().string();
  return name.size() != kHashLength ||
         name.find_first_not_of("0123456789abcdef") != std::string::npos;
}

// Returns the required counts of a target, from lines "TARGET COUNT WHAT".
ReachedCounts required_counts(const std::string& target,
                              const std::filesystem::path& path) {
  ReachedCounts required;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::string line_target;
    std::size_t count = 0;
    std::string what;
    words >> line_target >> count >> std::ws;
    std::getline(words, what);
    if (line_target == target) required[what] = count;
  }
  return required;
}

int report_error(const std::string& text) {
  std::fprintf(stderr, "%s\n", text.c_str());
  return 1;
}

int replay_corpus(const std::string& target, const std::filesystem::path& corpus) {
  const auto files = files_of(corpus / target);
  if (files.size() > kMaxInputs)
    return report_error("more than 60 inputs in the corpus");
  for (const auto& file : files) {
    if (!has_descriptive_name(file))
      return report_error("not a descriptive name: " + file.string());
  }
  veldmark::fuzz::reached("inputs", run_inputs(files));
  const ReachedCounts required = required_counts(target, corpus / "least_reached.txt");
  if (!required.contains("inputs"))
    return report_error("no required counts for " + target);
  int status = 0;
  for (const auto& [what, least] : required) {
    const std::size_t count = veldmark::fuzz::reached_counts()[what];
    if (count < least) {
      status = report_error(what + ": " + std::to_string(count) + ", at least " +
                            std::to_string(least) + " expected");
    }
  }
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  if (arguments.size() == 3 && arguments[0] == "--corpus") {
    return replay_corpus(arguments[1], arguments[2]);
  }
  std::vector<std::filesystem::path> files;
  for (const std::string& argument : arguments) {
    const auto more = files_of(argument);
    files.insert(files.end(), more.begin(), more.end());
  }
  return run_inputs(files) == 0 ? report_error("no inputs to run") : 0;
}
