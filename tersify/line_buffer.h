// Hands out the lines of a text file, each with room around it, so that the hot loops
// can look at whole vectors of characters.

#ifndef VELDMARK_TERSIFY_LINE_BUFFER_H_
#define VELDMARK_TERSIFY_LINE_BUFFER_H_

#include <cstddef>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace veldmark::tersify {

// Characters that can be read before and after the text of every line; they hold
// anything.
constexpr std::size_t kRoomAroundLine = 64;

// 720 fields of 360 characters: far more than any published file, and small enough for
// the processor's second cache.
constexpr std::size_t kLongestLine = std::size_t{256} * 1024;

class LineBuffer {
 public:
  // Puts up to `size` further bytes of the file in `buffer` and gives their number, 0
  // at the file's end. Errors are its own to throw.
  using ReadMore = std::function<std::size_t(char* buffer, std::size_t size)>;

  // What a line ends with: a line end, the end of the file, or the end of what a line
  // may have (the line is then longer than `longest`, and nothing must be read after
  // it).
  enum class End { kLineEnd, kFileEnd, kTooLong };

  struct Line {
    std::string_view text;  // without line end; valid until the next call
    End end = End::kLineEnd;
  };

  explicit LineBuffer(ReadMore read_more, std::size_t longest = kLongestLine);

  // Reads a line. A carriage return before its end belongs to the line end; the last
  // line may lack its line end. Nothing at the end of the file.
  std::optional<Line> next();

 private:
  // Moves the rest to the front and reads behind it; false at the end of the file.
  bool refill();

  ReadMore read_more_;
  std::size_t longest_;
  std::vector<char> buffer_;
  std::size_t begin_ = kRoomAroundLine;  // what is not yet handed out: begin_ to end_
  std::size_t end_ = kRoomAroundLine;
};

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_LINE_BUFFER_H_
