#include "sessions/blocks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <regex>
#include <sstream>
#include <string_view>
#include <utility>

namespace veldmark::testing {
namespace {

// A placeholder: {name}, {name>width} or {name<width}.
struct Place {
  std::string name;
  char side = 0;  // '<', '>', or 0 where the word has no columns of its own
  std::size_t width = 0;
};

// A line of a block: texts, with a placeholder after each of them but the last.
struct BlockLine {
  std::vector<std::string> texts;
  std::vector<Place> places;
};

BlockLine parsed(const std::string& line) {
  static const std::regex place(R"(\{(\w+)(?:([<>])(\d+))?\})");
  BlockLine parts;
  std::string rest = line;
  for (std::smatch found; std::regex_search(rest, found, place);) {
    const bool has_columns = found[2].matched;
    parts.texts.push_back(found.prefix());
    parts.places.push_back({found[1], has_columns ? *found[2].first : '\0',
                            has_columns ? std::stoul(found[3]) : 0});
    rest = found.suffix();
  }
  parts.texts.push_back(rest);
  return parts;
}

std::string in_columns(const std::string& word, const Place& place) {
  const std::string blanks(place.width - std::min(place.width, word.size()), ' ');
  return place.side == '>' ? blanks + word : word + blanks;
}

std::string line_with(const std::string& line, const BlockWords& words) {
  const BlockLine parts = parsed(line);
  std::string text = parts.texts.front();
  for (std::size_t i = 0; i < parts.places.size(); ++i) {
    const auto word = words.find(parts.places[i].name);
    if (word == words.end()) {
      ADD_FAILURE() << "no word for " << parts.places[i].name << " in " << line;
      return line;
    }
    text += in_columns(word->second, parts.places[i]) + parts.texts[i + 1];
  }
  return text;
}

// Returns a word at the start of `text` that fits `place`. That is only a guess, which
// the caller must check.
std::string_view guessed_word(std::string_view text, const Place& place,
                              const std::string& behind) {
  std::string_view word = text.substr(0, place.width);
  if (place.side == 0) {
    return text.substr(0, behind.empty() ? text.npos : text.find(behind));
  }
  word.remove_prefix(std::min(word.find_first_not_of(' '), word.size()));
  return word.substr(0, word.find(' '));
}

// Adds the words with which `line` becomes `shown`. Returns whether there are such
// words.
bool add_words(const std::string& line, const std::string& shown, BlockWords& words) {
  const BlockLine parts = parsed(line);
  std::string_view rest = shown;
  for (std::size_t i = 0; i < parts.places.size(); ++i) {
    if (!rest.starts_with(parts.texts[i])) {
      return false;
    }
    rest.remove_prefix(parts.texts[i].size());
    const Place& place = parts.places[i];
    const auto guess = std::string(guessed_word(rest, place, parts.texts[i + 1]));
    const std::string& word = words.emplace(place.name, guess).first->second;
    if (word.empty() || word.find_first_of(" =") != std::string::npos) {
      return false;
    }
    rest.remove_prefix(std::min(in_columns(word, place).size(), rest.size()));
  }
  return line_with(line, words) == shown;
}

// Returns the lines of a block, including those of the blocks that it names.
std::vector<std::string> flat_lines(const std::filesystem::path& folder,
                                    const std::string& name) {
  std::vector<std::string> lines;
  for (const std::string& line : read_lines(folder / (name + ".txt"))) {
    if (line.starts_with('@')) {
      const std::vector<std::string> inner = flat_lines(folder, line.substr(1));
      lines.insert(lines.end(), inner.begin(), inner.end());
    } else if (!line.starts_with('#')) {
      lines.push_back(line);
    }
  }
  return lines;
}

}  // namespace

Block::Block(std::vector<std::string> lines) : lines_(std::move(lines)) {
  for (const std::string& line : lines_) {
    for (const Place& place : parsed(line).places) {
      if (std::find(names_.begin(), names_.end(), place.name) == names_.end()) {
        names_.push_back(place.name);
      }
    }
  }
}

std::vector<std::string> Block::lines_with(const BlockWords& words) const {
  for (const auto& [name, word] : words) {
    EXPECT_NE(std::find(names_.begin(), names_.end(), name), names_.end())
        << "the block has no " << name;
  }
  std::vector<std::string> lines;
  for (const std::string& line : lines_) {
    lines.push_back(line_with(line, words));
  }
  return lines;
}

std::optional<BlockWords> Block::words_in(std::span<const std::string> screen) const {
  if (screen.size() < lines_.size()) {
    return std::nullopt;
  }
  BlockWords words;
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    if (!add_words(lines_[i], screen[i], words)) {
      return std::nullopt;
    }
  }
  return words;
}

Blocks::Blocks(const std::filesystem::path& folder) {
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    const std::string name = entry.path().stem().string();
    blocks_.emplace(name, Block(flat_lines(folder, name)));
  }
}

std::vector<std::string> Blocks::spelt_out(const std::string& line) const {
  if (!line.starts_with('@')) {
    return {line};
  }
  std::istringstream parts(line.substr(1));
  std::string name;
  parts >> name;
  BlockWords words;
  for (std::string part; parts >> part;) {
    const std::size_t sign = part.find('=');
    EXPECT_NE(sign, std::string::npos) << "no name=word: " << line;
    words[part.substr(0, sign)] = part.substr(std::min(sign, part.size() - 1) + 1);
  }
  const auto block = blocks_.find(name);
  if (block == blocks_.end()) {
    ADD_FAILURE() << "no such block: " << line;
    return {};
  }
  return block->second.lines_with(words);
}

std::vector<std::string> Blocks::condensed(std::span<const std::string> screen) const {
  std::vector<std::string> lines;
  while (!screen.empty()) {
    std::size_t longest = 1;
    std::string line = screen.front();
    for (const auto& [name, block] : blocks_) {
      const auto words = block.size() > longest ? block.words_in(screen) : std::nullopt;
      if (words) {
        longest = block.size();
        line = "@" + name;
        for (const std::string& word : block.names()) {
          line += " " + word + "=" + words->at(word);
        }
      }
    }
    lines.push_back(line);
    screen = screen.subspan(longest);
  }
  return lines;
}

std::vector<std::string> read_lines(const std::filesystem::path& path) {
  std::ifstream file(path);
  EXPECT_TRUE(file.is_open()) << path;
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) {
    lines.push_back(line);
  }
  return lines;
}

}  // namespace veldmark::testing
