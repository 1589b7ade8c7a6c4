#include "sessions/transcript.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>

#include "support/grid_text.h"
#include "support/temporary_folder.h"

namespace veldmark::testing {
namespace {

std::vector<std::string> read_lines(const std::filesystem::path& path) {
  std::ifstream file(path);
  EXPECT_TRUE(file.is_open()) << path;
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) {
    lines.push_back(line);
  }
  return lines;
}

// |text| is a line with its line end, |text one without.
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

// The answers at the end of a line of the screen: <1> or <><5>.
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

void append_screen_line(Transcript& transcript, const std::string& line,
                        const Blocks& blocks) {
  if (!line.starts_with('@')) {
    transcript.screen.push_back(line);
    append_answers(line, transcript.answers);
    return;
  }
  const auto block = blocks.find(line.substr(1));
  ASSERT_NE(block, blocks.end()) << "no such block: " << line;
  for (const std::string& block_line : block->second) {
    append_screen_line(transcript, block_line, blocks);
  }
}

// The name and length of the longest block that the screen holds from `begin`.
std::pair<std::string, std::size_t> longest_block(
    const std::vector<std::string>& screen, std::size_t begin, const Blocks& blocks) {
  std::pair<std::string, std::size_t> best;
  for (const auto& [name, lines] : blocks) {
    if (lines.size() > best.second && begin + lines.size() <= screen.size() &&
        std::equal(lines.begin(), lines.end(),
                   screen.begin() + static_cast<std::ptrdiff_t>(begin))) {
      best = {name, lines.size()};
    }
  }
  return best;
}

// The text between the bars at the end of a data line.
std::string text_in_bars(const std::string& line) {
  const std::size_t begin = line.find('|');
  return line.substr(begin + 1, line.rfind('|') - begin - 1);
}

struct PreparedGrids {
  std::map<std::string, GridText> grids;

  GridText& of(const std::string& variable) { return grids.at(variable); }
};

void prepare_grid(std::istringstream& words, PreparedGrids& prepared) {
  std::string variable;
  int last_year = 0;
  int first_row = 0;
  int last_row = 0;
  int missing = 0;
  char dash = 0;
  words >> variable >> last_year >> first_row >> dash >> last_row >> missing;
  prepared.grids.emplace(variable, GridText(last_year, first_row, last_row, missing));
}

// One line of `prepare_data` that changes a grid file. Gives whether it was one.
bool change_grid(const std::string& kind, std::istringstream& words,
                 const std::string& line, PreparedGrids& prepared) {
  std::string variable;
  words >> variable;
  int year = 0;
  int month = 0;
  int row = 0;
  int column = 0;
  int value = 0;
  if (kind == "series") {
    words >> year >> row >> column;
    for (month = 1; month <= 12 && words >> value; ++month) {
      prepared.of(variable).set_value(year, month, row, column, value);
    }
  } else if (kind == "constant") {
    int last_year = 0;
    char dash = 0;
    words >> year >> dash >> last_year >> row >> column >> value;
    for (; year <= last_year; ++year) {
      for (month = 1; month <= 12; ++month) {
        prepared.of(variable).set_value(year, month, row, column, value);
      }
    }
  } else if (kind == "value") {
    words >> year >> month >> row >> column >> value;
    prepared.of(variable).set_value(year, month, row, column, value);
  } else if (kind == "field") {
    words >> year >> month >> row >> column;
    prepared.of(variable).set_field(year, month, row, column, text_in_bars(line));
  } else if (kind == "line") {
    words >> year >> month >> row;
    prepared.of(variable).set_line(year, month, row, text_in_bars(line));
  } else if (kind == "crlf") {
    prepared.of(variable).end_lines_with_crlf();
  } else if (kind == "cut") {
    std::size_t characters = 0;
    words >> year >> month >> row >> characters;
    prepared.of(variable).cut(year, month, row, characters);
  } else {
    return false;
  }
  return true;
}

}  // namespace

Blocks read_blocks(const std::filesystem::path& folder) {
  Blocks blocks;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    blocks[entry.path().stem().string()] = read_lines(entry.path());
  }
  return blocks;
}

Transcript read_transcript(const std::filesystem::path& path, const Blocks& blocks) {
  Transcript transcript;
  std::string section;
  for (const std::string& line : read_lines(path)) {
    if (line.starts_with("--- ") || line == "answers") {
      section = line.starts_with("--- ") ? line.substr(4) : line;
      if (section.starts_with("file ")) {
        transcript.files[section.substr(5)] = "";
      }
    } else if (section == "screen") {
      append_screen_line(transcript, line, blocks);
    } else if (section == "answers") {
      transcript.answers.push_back(line.empty() ? "RETURN" : line);
    } else if (section == "stderr") {
      transcript.errors += content_of_bars(line);
    } else if (section.starts_with("file ")) {
      transcript.files[section.substr(5)] += content_of_bars(line);
    } else if (line.starts_with('#')) {
      transcript.comments.push_back(line);
    } else if (line.starts_with("data ")) {
      transcript.data.push_back(line.substr(5));
    } else if (line.starts_with("status ")) {
      transcript.status = std::stoi(line.substr(7));
    } else {
      ADD_FAILURE() << path << ": not understood: " << line;
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
  for (std::size_t i = 0; i < transcript.screen.size();) {
    const auto [name, length] = longest_block(transcript.screen, i, blocks);
    out << (length == 0 ? transcript.screen[i] : "@" + name) << '\n';
    i += std::max<std::size_t>(length, 1);
  }
  if (!transcript.errors.empty()) {
    out << "--- stderr\n";
    write_bars(out, transcript.errors);
  }
  for (const auto& [name, content] : transcript.files) {
    out << "--- file " << name << '\n';
    write_bars(out, content);
  }
}

void prepare_data(const std::vector<std::string>& lines) {
  PreparedGrids prepared;
  for (const std::string& line : lines) {
    std::istringstream words(line);
    std::string kind;
    words >> kind;
    if (kind == "grid") {
      prepare_grid(words, prepared);
    } else if (kind == "folder") {
      std::string name;
      words >> name;
      std::filesystem::create_directory(name);
    } else if (kind == "file") {
      std::string name;
      words >> name;
      write_file(name, text_in_bars(line) + "\n");
    } else {
      EXPECT_TRUE(change_grid(kind, words, line, prepared)) << line;
    }
  }
  for (const auto& [variable, grid] : prepared.grids) {
    write_file(data_file_name(variable), grid.text());
  }
}

}  // namespace veldmark::testing
