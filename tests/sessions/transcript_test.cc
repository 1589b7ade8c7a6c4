// Runs every transcript of cases/ and compares the screen, standard error, the exit
// status and all files of the folder, byte for byte.

#include "sessions/transcript.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "sessions/prepared_data.h"
#include "support/same_text.h"
#include "support/session.h"
#include "support/temporary_folder.h"

namespace veldmark::testing {
namespace {

using Entries = std::map<std::string, FolderEntry>;

const std::filesystem::path kSessions = VELDMARK_SESSIONS_FOLDER;

// With fewer cases, some were lost. Raise it when adding cases.
constexpr std::size_t kLeastCases = 107;

std::vector<std::string> case_names() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(kSessions / "cases")) {
    names.push_back(entry.path().stem().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) {
    text += line + "\n";
  }
  return text;
}

// Returns the entries that a session has created or changed.
Entries changed_since(const Entries& before) {
  Entries changed;
  for (const auto& [name, entry] : folder_entries()) {
    const auto old = before.find(name);
    if (old == before.end() || !(old->second == entry)) {
      changed[name] = entry;
    }
  }
  return changed;
}

void expect_same_entries(const Entries& expected, const Entries& found) {
  for (const auto& [name, entry] : expected) {
    ASSERT_TRUE(found.contains(name)) << "no file " << name;
    const FolderEntry& got = found.at(name);
    EXPECT_EQ(got.type, entry.type) << "the kind of " << name;
    EXPECT_EQ(got.mode, entry.mode) << "the mode of " << name;
    EXPECT_TRUE(same_text(got.content, entry.content)) << name;
  }
  for (const auto& [name, entry] : found) {
    EXPECT_TRUE(expected.contains(name)) << "a file too many: " << name;
  }
}

// Replaces the expected results by the actual ones. Nothing is compared then, so the
// test fails.
void rewrite(const std::filesystem::path& path, Transcript transcript,
             const SessionResult& result, const Entries& before, const Blocks& blocks) {
  transcript.status = result.status;
  transcript.screen = result.screen;
  transcript.errors = result.errors;
  transcript.files = changed_since(before);
  for (const auto& [name, entry] : transcript.files) {
    ASSERT_EQ(entry.type, std::filesystem::file_type::regular) << name;
  }
  write_transcript(path, transcript, blocks);
  FAIL() << "written, not compared: " << path;
}

class TranscriptCase : public ::testing::TestWithParam<std::string> {};

TEST_P(TranscriptCase, RunsAsWritten) {
  const Blocks blocks(kSessions / "blocks");
  const std::filesystem::path path = kSessions / "cases" / (GetParam() + ".txt");
  const Transcript expected = read_transcript(path, blocks);

  ::umask(022);
  const TemporaryFolder folder;
  prepare_data(expected.data);
  const Entries before = folder_entries();
  const SessionResult result = run_session(expected.answers);
  if (std::getenv("VELDMARK_WRITE_TRANSCRIPTS") != nullptr) {
    rewrite(path, expected, result, before, blocks);
    return;
  }

  EXPECT_EQ(result.status, expected.status);
  EXPECT_TRUE(same_text(joined(result.screen), joined(expected.screen)))
      << "the screen";
  EXPECT_TRUE(same_text(result.errors, expected.errors)) << "standard error";
  Entries files = expected.files;
  files.insert(before.begin(), before.end());  // where the transcript has none
  expect_same_entries(files, folder_entries());
}

INSTANTIATE_TEST_SUITE_P(Sessions, TranscriptCase, ::testing::ValuesIn(case_names()),
                         [](const auto& instance) {
                           std::string name = instance.param;
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

TEST(Transcripts, AreAllThere) { EXPECT_GE(case_names().size(), kLeastCases); }

// A case must use blocks wherever they fit.
TEST(Transcripts, NameEveryBlockThatFits) {
  const Blocks blocks(kSessions / "blocks");
  for (const std::string& name : case_names()) {
    const std::filesystem::path path = kSessions / "cases" / (name + ".txt");
    const std::vector<std::string> screen = read_transcript(path, blocks).screen;
    const std::vector<std::string> lines = read_lines(path);
    const auto title = std::find(lines.begin(), lines.end(), "--- screen");
    for (const std::string& line : blocks.condensed(screen)) {
      EXPECT_NE(std::find(title, lines.end(), line), lines.end())
          << name << ": " << line;
    }
  }
}

}  // namespace
}  // namespace veldmark::testing
