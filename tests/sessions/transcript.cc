#include "sessions/transcript.h"

#include <gtest/gtest.h>

#include <fstream>
#include <ostream>
#include <sstream>
#include <string_view>

namespace veldmark::testing {
namespace {

constexpr auto kUsualMode = static_cast<std::filesystem::perms>(0644);

// Returns the characters of |text|, with a newline, or of |text, without one.
std::string content_of_bars(const std::string& line) {
  EXPECT_TRUE(line.starts_with('|')) << "no content line: " << line;
  const bool ended = line.size() > 1 && line.ends_with('|');
  return ended ? line.substr(1, line.size() - 2) + "\n" : line.substr(1);
}

void write_bars(std::ostream& out, const std::string& content) {
  std::size_t begin = 0;
  while (begin < content.size()) {
    const std::size_t end = content.find('\n', begin);
    if (end == std::string::npos) {
      out << '|' << content.substr(begin) << '\n';
      return;
    }
    out << '|' << content.substr(begin, end - begin) << "|\n";
    begin = end + 1;
  }
}

// Returns the answers at the end of a line of the screen: <1> or <><5>.
void append_answers(std::string_view line, std::vector<std::string>& answers) {
  std::vector<std::string> last_first;
  while (line.ends_with('>')) {
    const std::size_t begin = line.rfind('<');
    last_first.emplace_back(line.substr(begin + 1, line.size() - begin - 2));
    line = line.substr(0, begin);
  }
  std::erase(last_first, "EOF");
  answers.insert(answers.end(), last_first.rbegin(), last_first.rend());
}

// A section of a transcript, or the lines before the first one.
class Section {
 public:
  // Requires that `title` is the text after the dashes, or "answers", or "" for the
  // lines before the first section.
  explicit Section(const std::string& title, Transcript& transcript)
      : transcript_(&transcript) {
    std::istringstream words(title);
    std::string mode;
    words >> kind_ >> name_ >> mode >> std::oct;
    if (kind_ == "file") {
      unsigned bits = static_cast<unsigned>(kUsualMode);
      words >> bits;
      transcript.files[name_] = {std::filesystem::file_type::regular,
                                 static_cast<std::filesystem::perms>(bits), ""};
    }
  }

  // Handles a line. Returns false if it is not valid.
  [[nodiscard]] bool add(const std::string& line, const Blocks& blocks) {
    if (kind_ == "screen") {
      for (const std::string& shown : blocks.spelt_out(line)) {
        transcript_->screen.push_back(shown);
        append_answers(shown, transcript_->answers);
      }
    } else if (kind_ == "answers") {
      transcript_->answers.push_back(line.empty() ? "RETURN" : line);
    } else if (kind_ == "stderr") {
      transcript_->errors += content_of_bars(line);
    } else if (kind_ == "file") {
      transcript_->files[name_].content += content_of_bars(line);
    } else {
      return kind_.empty() && add_to_head(line);
    }
    return true;
  }

 private:
  bool add_to_head(const std::string& line) {
    if (line.starts_with('#')) {
      transcript_->comments.push_back(line);
    } else if (line.starts_with("data ")) {
      transcript_->data.push_back(line.substr(5));
    } else if (line.starts_with("status ")) {
      transcript_->status = std::stoi(line.substr(7));
    } else {
      return false;
    }
    return true;
  }

  Transcript* transcript_;
  std::string kind_;
  std::string name_;
};

}  // namespace

Transcript read_transcript(const std::filesystem::path& path, const Blocks& blocks) {
  Transcript transcript;
  Section section("", transcript);
  for (const std::string& line : read_lines(path)) {
    if (line.starts_with("--- ")) {
      section = Section(line.substr(4), transcript);
    } else if (line == "answers") {
      section = Section(line, transcript);
    } else {
      EXPECT_TRUE(section.add(line, blocks)) << path << ": not understood: " << line;
    }
  }
  return transcript;
}

void write_transcript(const std::filesystem::path& path, const Transcript& transcript,
                      const Blocks& blocks) {
  std::ofstream out(path);
  for (const std::string& line : transcript.comments) {
    out << line << '\n';
  }
  for (const std::string& line : transcript.data) {
    out << "data " << line << '\n';
  }
  out << "status " << transcript.status << "\n--- screen\n";
  for (const std::string& line : blocks.condensed(transcript.screen)) {
    out << line << '\n';
  }
  if (!transcript.errors.empty()) {
    out << "--- stderr\n";
    write_bars(out, transcript.errors);
  }
  for (const auto& [name, file] : transcript.files) {
    out << "--- file " << name;
    if (file.mode != kUsualMode) {
      out << " mode " << std::oct << static_cast<unsigned>(file.mode) << std::dec;
    }
    out << '\n';
    write_bars(out, file.content);
  }
}

}  // namespace veldmark::testing
