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

// Checks that each line it hands out begins and ends where it should.
class FramedLines {
 public:
  // Reads the lines of `rows` (ascending). Requires that the file holds `years` and
  // that all arguments outlive this object.
  FramedLines(const InputFile& input, std::span<const std::int32_t> rows,
              const Years& years, const Progress& progress);

  // Takes a line: the index of its row in `rows`, and its 3600 characters; one more
  // character after them is readable.
  using UseLine = std::function<void(std::size_t index, std::string_view line)>;

  // Calls `use_line` with each line of a month, counted from 0 in `years`. Throws
  // Failure if a line does not begin and end where it should or a read fails, and
  // whatever `use_line` throws.
  void for_each(std::size_t month, const UseLine& use_line);

  // Throws Failure, which names the line of the file.
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
  std::size_t line_size_;
  std::int64_t first_month_;  // of `years`, counted from 0 in the file
  std::vector<char> buffer_;
};

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_FRAMED_LINES_H_
