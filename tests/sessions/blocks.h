// Parts of a screen that many transcripts share.
//
// A block is a file with lines of the screen in the notation of support/session.h. In a
// line, {name} is a placeholder for a word that differs between transcripts; {name>8}
// is right-aligned in eight characters, {name<8} left-aligned. A line @OTHER includes
// the block OTHER with its placeholders. Lines that start with # are comments.
//
// A transcript uses a block with a line "@NAME name=word ...".

#ifndef VELDMARK_TESTS_SESSIONS_BLOCKS_H_
#define VELDMARK_TESTS_SESSIONS_BLOCKS_H_

#include <filesystem>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace veldmark::testing {

// The words of a block, by the names of their placeholders.
using BlockWords = std::map<std::string, std::string>;

class Block {
 public:
  explicit Block(std::vector<std::string> lines);

  [[nodiscard]] std::size_t size() const { return lines_.size(); }

  // Returns the lines with `words` filled in. Fails the test if a placeholder has no
  // word or a word no placeholder.
  [[nodiscard]] std::vector<std::string> lines_with(const BlockWords& words) const;

  // Returns the words with which this block is the start of `screen`; nullopt if there
  // are none.
  [[nodiscard]] std::optional<BlockWords> words_in(
      std::span<const std::string> screen) const;

  // Returns the names in the order in which they first appear.
  [[nodiscard]] const std::vector<std::string>& names() const { return names_; }

 private:
  std::vector<std::string> lines_;
  std::vector<std::string> names_;
};

class Blocks {
 public:
  // Reads every file of `folder`.
  explicit Blocks(const std::filesystem::path& folder);

  // Returns the lines of the block that a line of a transcript names; other lines
  // unchanged.
  [[nodiscard]] std::vector<std::string> spelt_out(const std::string& line) const;

  // Returns `screen` with lines replaced by the longest block that fits, from the first
  // line on.
  [[nodiscard]] std::vector<std::string> condensed(
      std::span<const std::string> screen) const;

 private:
  std::map<std::string, Block> blocks_;
};

// Returns the lines of a file without their newlines.
std::vector<std::string> read_lines(const std::filesystem::path& path);

}  // namespace veldmark::testing

#endif  // VELDMARK_TESTS_SESSIONS_BLOCKS_H_
