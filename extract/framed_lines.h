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

// Takes the number of bytes that were read since the last call.
using Progress = std::function<void(std::int64_t)>;

// Every line that is handed out has a line end before it and one at its end.
class FramedLines {
 public:
  // The lines of `rows` (ascending) in `years`, which the file holds. All must outlive
  // this.
  FramedLines(const InputFile& input, std::span<const std::int32_t> rows,
              const Years& years, const Progress& progress);

  // Takes a line: the index of its row in `rows`, and its 3600 characters, behind which
  // another one may be read.
  using UseLine = std::function<void(std::size_t index, std::string_view line)>;

  // Hands out the lines of a month, counted from 0 in the years. Throws Failure when a
  // line is not in its place or the system fails to read, and what `use_line` throws.
  void for_each(std::size_t month, const UseLine& use_line);

  // Throws Failure that names a line of the file.
  [[noreturn]] void fail(std::size_t month, std::size_t index,
                         const std::string& what) const;

 private:
  [[nodiscard]] std::int64_t line_index(std::size_t month, std::size_t index) const;
  void read_piece(std::size_t month, std::size_t index, std::size_t count);
  void read_bytes(std::int64_t offset, char* buffer, std::size_t size) const;
  void expect_frame(std::size_t month, std::size_t index, const char* line) const;

  const InputFile& input_;
  std::span<const std::int32_t> rows_;
  const Progress& progress_;
  std::string_view line_end_;
  std::size_t line_size_;
  std::int64_t first_month_;  // of the years in the file, counted from 0
  std::vector<char> buffer_;
};

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_FRAMED_LINES_H_
