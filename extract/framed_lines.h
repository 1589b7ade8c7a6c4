// Reads the lines of chosen rows from a condensed grid file, month by month.

#ifndef VELDMARK_EXTRACT_FRAMED_LINES_H_
#define VELDMARK_EXTRACT_FRAMED_LINES_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "extract/input_file.h"

namespace veldmark::extract {

// Takes the number of bytes read since its last call.
using Progress = std::function<void(std::int64_t)>;

// All lines of a grid file have the same length, so a line is found by its offset. Each
// is checked to have newlines right before and right after it: a line that is too short
// or too long shifts all that follow. The first line of a file needs none before it,
// and the last line none after it.
class FramedLines {
 public:
  // Reads the lines of `rows`, counted from 1 in file order, ascending. Requires that
  // the file holds `years`, and that `input`, `rows` and `progress` outlive this
  // object.
  FramedLines(const InputFile& input, std::span<const std::int32_t> rows,
              const Years& years, const Progress& progress);

  // Takes a line: the index of its row in `rows`, and its 3600 characters; one more
  // character after them is readable.
  using UseLine = std::function<void(std::size_t index, std::string_view line)>;

  // Calls `use_line` with each line of a month, counted from 0 in `years`. Throws
  // Failure if a line has the wrong length or a read fails, and whatever `use_line`
  // throws.
  void for_each(std::size_t month, const UseLine& use_line);

  // Throws Failure with the text `what`, after the names of the file and the line.
  [[noreturn]] void fail(std::size_t month, std::size_t index,
                         const std::string& what) const;

 private:
  [[nodiscard]] std::int64_t line_index(std::size_t month, std::size_t index) const;
  void read_piece(std::size_t month, std::size_t index, std::size_t count);
  void read_bytes(std::int64_t offset, char* buffer, std::size_t size) const;
  void require_line_ends(std::size_t month, std::size_t index, const char* line) const;

  const InputFile& input_;
  std::span<const std::int32_t> rows_;
  const Progress& progress_;
  std::string_view line_end_;
  std::size_t line_size_;     // with its newline
  std::size_t most_lines_;    // in a piece
  std::int64_t first_month_;  // of `years`, counted from 0 in the file
  std::vector<char> buffer_;  // the character before a piece of lines, and the piece
};

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_FRAMED_LINES_H_
