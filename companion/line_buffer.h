// Hands out the lines of a text file, each with room around it, so that the hot loops
// can look at whole vectors of characters.

#ifndef VELDMARK_COMPANION_LINE_BUFFER_H_
#define VELDMARK_COMPANION_LINE_BUFFER_H_

#include <cstddef>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace veldmark::companion {

// Characters that can be read before and after the text of every line; they hold
// anything.
constexpr std::size_t kLinePadding = 64;

// 720 fields of 360 characters: far more than any published file, and small enough for
// the processor's second cache.
constexpr std::size_t kLongestLine = std::size_t{256} * 1024;

// Returns the text without the byte order mark that some editors and spreadsheets put
// before the first line.
std::string_view without_byte_order_mark(std::string_view text);

class LineBuffer {
 public:
  // Puts up to `size` further bytes of the file in `buffer` and returns their number, 0
  // at the file's end. What it throws passes through.
  using ReadMore = std::function<std::size_t(char* buffer, std::size_t size)>;

  // What a line ends with: a line end, the end of the file, or the end of what a line
  // may have (the line is then longer than `longest`, and nothing must be read after
  // it).
  enum class End { kLineEnd, kFileEnd, kTooLong };

  struct Line {
    std::string_view text;  // without line end; valid until the next call
    End end = End::kLineEnd;
  };

  //   longest    characters that a line may have, without its line end
  explicit LineBuffer(ReadMore read_more, std::size_t longest = kLongestLine);

  // Returns the next line, nullopt at the end of the file. A carriage return before its
  // end belongs to the line end; the last line may lack its line end.
  std::optional<Line> next();

 private:
  // Moves the rest to the front and reads behind it; false at the end of the file.
  bool refill();

  ReadMore read_more_;
  std::size_t longest_;
  std::vector<char> buffer_;
  std::size_t begin_ = kLinePadding;  // what is not yet handed out: begin_ to end_
  std::size_t end_ = kLinePadding;
};

}  // namespace veldmark::companion

#endif  // VELDMARK_COMPANION_LINE_BUFFER_H_
