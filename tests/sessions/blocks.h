// The parts of a screen that many transcripts share.
//
// A block is a file of screen lines in the notation of support/session.h. In a line,
// {name} stands for a word that differs from transcript to transcript, {name>8} for one
// at the right of eight columns and {name<8} for one at the left. A line @OTHER stands
// for the lines of the block OTHER; its names are the block's own then. Lines that
// begin with # are remarks.
//
// A transcript names a block in a line "@NAME name=word ...".

#ifndef VELDMARK_TESTS_SESSIONS_BLOCKS_H_
#define VELDMARK_TESTS_SESSIONS_BLOCKS_H_

#include <filesystem>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace veldmark::testing {

// The words of a block by their names.
using BlockWords = std::map<std::string, std::string>;

class Block {
 public:
  explicit Block(std::vector<std::string> lines);

  [[nodiscard]] std::size_t size() const { return lines_.size(); }

  // Returns the lines with `words` in them. Fails the test when a name has no word or
  // a word no name.
  [[nodiscard]] std::vector<std::string> lines_with(const BlockWords& words) const;

  // Returns the words with which this block is the beginning of `screen`; nullopt when
  // there are none.
  [[nodiscard]] std::optional<BlockWords> words_in(
      std::span<const std::string> screen) const;

  // Returns the names in the order in which they first stand in the block.
  [[nodiscard]] const std::vector<std::string>& names() const { return names_; }

 private:
  std::vector<std::string> lines_;
  std::vector<std::string> names_;
};

class Blocks {
 public:
  // Reads every file of `folder`.
  explicit Blocks(const std::filesystem::path& folder);

  // Returns what a line of a transcript stands for: itself, or the lines of a block.
  [[nodiscard]] std::vector<std::string> spelt_out(const std::string& line) const;

  // Returns `screen` with the longest block that fits in place of its lines, from the
  // first line on.
  [[nodiscard]] std::vector<std::string> condensed(
      std::span<const std::string> screen) const;

 private:
  std::map<std::string, Block> blocks_;
};

// Returns the lines of a file without their line ends.
std::vector<std::string> read_lines(const std::filesystem::path& path);

}  // namespace veldmark::testing

#endif  // VELDMARK_TESTS_SESSIONS_BLOCKS_H_
