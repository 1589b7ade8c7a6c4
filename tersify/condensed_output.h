// Output buffer for the lines of a condensed copy.

#ifndef VELDMARK_TERSIFY_CONDENSED_OUTPUT_H_
#define VELDMARK_TERSIFY_CONDENSED_OUTPUT_H_

#include <cstddef>
#include <string_view>
#include <vector>

#include "tersify/condense_line.h"
#include "util/part_file.h"
#include "util/piece_size.h"

namespace veldmark::tersify {

// Bytes of a condensed line with its newline.
constexpr std::size_t kCondensedBytesPerLine = kCondensedLine + 1;

// Collects condensed lines and writes them in large blocks. Throws what PartFile
// throws.
class CondensedOutput {
 public:
  explicit CondensedOutput(PartFile& file)
      : file_(file), buffer_(kPieceSize + kCondensedCapacity) {}

  // Returns the buffer of the next line, kCondensedCapacity characters.
  [[nodiscard]] char* next_line() { return buffer_.data() + size_; }

  // Adds a newline to the line written at next_line().
  void end_line() {
    buffer_[size_ + kCondensedLine] = '\n';
    size_ += kCondensedBytesPerLine;
    if (size_ >= kPieceSize) {
      flush();
    }
  }

  // Writes the rest of the buffer. Must be called after the last line.
  void flush() {
    file_.write(std::string_view(buffer_.data(), size_));
    size_ = 0;
  }

 private:
  PartFile& file_;
  std::vector<char> buffer_;
  std::size_t size_ = 0;
};

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_CONDENSED_OUTPUT_H_
