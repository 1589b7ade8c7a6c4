#include "extract/framed_lines.h"

#include <algorithm>
#include <cerrno>

#include "extract/read_failure.h"
#include "grid/grid_layout.h"
#include "util/failure.h"
#include "util/in_quotes.h"
#include "util/piece_size.h"

namespace veldmark::extract {

FramedLines::FramedLines(const InputFile& input, std::span<const std::int32_t> rows,
                         const Years& years, const Progress& progress)
    : input_(input),
      rows_(rows),
      progress_(progress),
      line_end_(input.line_end_size == 1 ? "\n" : "\r\n"),
      line_size_(kLineLength + input.line_end_size),
      most_lines_(kPieceSize / line_size_),
      first_month_(std::int64_t{years.first - input.years.first} * kMonthsPerYear),
      buffer_(1 + most_lines_ * line_size_) {}

// Adjacent rows are read with one call.
void FramedLines::for_each(std::size_t month, const UseLine& use_line) {
  std::size_t begin = 0;
  while (begin < rows_.size()) {
    std::size_t end = begin + 1;
    while (end < rows_.size() && rows_[end] == rows_[end - 1] + 1 &&
           end - begin < most_lines_) {
      ++end;
    }
    read_piece(month, begin, end - begin);
    for (std::size_t index = begin; index < end; ++index) {
      const char* line = buffer_.data() + 1 + (index - begin) * line_size_;
      require_line_ends(month, index, line);
      use_line(index, std::string_view(line, kLineLength));
    }
    begin = end;
  }
}

void FramedLines::fail(std::size_t month, std::size_t index,
                       const std::string& what) const {
  throw Failure(in_quotes(input_.name) + ": line " +
                std::to_string(line_index(month, index) + 1) + ": " + what);
}

std::int64_t FramedLines::line_index(std::size_t month, std::size_t index) const {
  return (first_month_ + static_cast<std::int64_t>(month)) * kGridRows + rows_[index] -
         1;
}

// Reads lines into the buffer, together with the character before the first of them.
void FramedLines::read_piece(std::size_t month, std::size_t index, std::size_t count) {
  const std::int64_t offset =
      line_index(month, index) * static_cast<std::int64_t>(line_size_);
  const std::size_t size = count * line_size_;
  const auto available = static_cast<std::size_t>(input_.size - offset);
  if (offset == 0) {
    buffer_[0] = '\n';
    read_bytes(0, buffer_.data() + 1, std::min(size, available));
  } else {
    read_bytes(offset - 1, buffer_.data(), 1 + std::min(size, available));
  }
  if (size > available) {  // the last line lacks its line end
    line_end_.copy(buffer_.data() + 1 + available, line_end_.size());
  }
  if (progress_) {
    progress_(static_cast<std::int64_t>(size));
  }
}

void FramedLines::read_bytes(std::int64_t offset, char* buffer,
                             std::size_t size) const {
  errno = 0;
  if (!input_.file.read_at(offset, buffer, size)) {
    fail_to_read(input_.name, errno);
  }
}

void FramedLines::require_line_ends(std::size_t month, std::size_t index,
                                    const char* line) const {
  if (line[-1] != '\n') {
    fail(month, index, "it does not begin in its place; tersify --check tells more");
  }
  if (std::string_view(line + kLineLength, line_end_.size()) != line_end_) {
    fail(month, index,
         "it does not end after 3600 characters; tersify --check tells more");
  }
}

}  // namespace veldmark::extract
