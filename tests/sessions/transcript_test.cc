// Runs every transcript of cases/ and compares the screen, standard error, the exit
// status and all files of the folder, byte for byte.

#include "sessions/transcript.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "support/session.h"
#include "support/temporary_folder.h"

namespace veldmark::testing {
namespace {

const std::filesystem::path kSessions = VELDMARK_SESSIONS_FOLDER;

std::vector<std::string> case_names() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(kSessions / "cases")) {
    names.push_back(entry.path().stem().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string visible(std::string text) {
  std::replace(text.begin(), text.end(), ' ', '\xB7');
  std::string shown;
  for (const char character : text) {
    shown += character == '\xB7' ? "·" : std::string(1, character);
  }
  return shown;
}

// Fails with the first line that differs, its number and column.
void expect_same_lines(const std::string& what,
                       const std::vector<std::string>& expected,
                       const std::vector<std::string>& actual) {
  const auto difference =
      std::mismatch(expected.begin(), expected.end(), actual.begin(), actual.end());
  if (difference.first == expected.end() && difference.second == actual.end()) {
    return;
  }
  const std::string end = "(nothing)";
  const std::string wanted =
      difference.first == expected.end() ? end : *difference.first;
  const std::string got = difference.second == actual.end() ? end : *difference.second;
  const auto place =
      std::mismatch(wanted.begin(), wanted.end(), got.begin(), got.end());
  ADD_FAILURE() << what << " differs in line "
                << difference.first - expected.begin() + 1 << ", column "
                << place.first - wanted.begin() + 1 << "\nexpected " << visible(wanted)
                << "\n     got " << visible(got);
}

std::vector<std::string> lines_of(const std::string& content) {
  std::vector<std::string> lines;
  std::size_t begin = 0;
  while (begin < content.size()) {
    const std::size_t end = std::min(content.find('\n', begin), content.size() - 1);
    lines.push_back(content.substr(begin, end - begin + 1));
    begin = end + 1;
  }
  return lines;
}

class TranscriptCase : public ::testing::TestWithParam<std::string> {};

TEST_P(TranscriptCase, RunsAsWritten) {
  const Blocks blocks = read_blocks(kSessions / "blocks");
  const std::filesystem::path path = kSessions / "cases" / (GetParam() + ".txt");
  Transcript expected = read_transcript(path, blocks);

  const TemporaryFolder folder;
  prepare_data(expected.data);
  std::map<std::string, std::string> files = folder_content();
  const SessionResult result = run_session(expected.answers);

  if (std::getenv("VELDMARK_WRITE_TRANSCRIPTS") != nullptr) {
    expected.status = result.status;
    expected.screen = result.screen;
    expected.errors = result.errors;
    expected.files.clear();
    for (const auto& [name, content] : folder_content()) {
      if (!files.contains(name) || files[name] != content) {
        expected.files[name] = content;
      }
    }
    write_transcript(path, expected, blocks);
    GTEST_SKIP() << "written, not checked";
  }

  EXPECT_EQ(result.status, expected.status);
  expect_same_lines("the screen", expected.screen, result.screen);
  expect_same_lines("standard error", lines_of(expected.errors),
                    lines_of(result.errors));
  for (const auto& [name, content] : expected.files) {
    files[name] = content;
  }
  const std::map<std::string, std::string> found = folder_content();
  for (const auto& [name, content] : files) {
    ASSERT_TRUE(found.contains(name)) << "no file " << name;
    expect_same_lines(name, lines_of(content), lines_of(found.at(name)));
  }
  for (const auto& [name, content] : found) {
    EXPECT_TRUE(files.contains(name)) << "a file too many: " << name;
  }
}

INSTANTIATE_TEST_SUITE_P(Sessions, TranscriptCase, ::testing::ValuesIn(case_names()),
                         [](const auto& instance) {
                           std::string name = instance.param;
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

}  // namespace
}  // namespace veldmark::testing
