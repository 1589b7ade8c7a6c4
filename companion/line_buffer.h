// Reads a text file line by line. Each line is padded on both sides, so that the hot
// loops can load whole vectors of characters.

#ifndef VELDMARK_COMPANION_LINE_BUFFER_H_
#define VELDMARK_COMPANION_LINE_BUFFER_H_

#include <cstddef>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace veldmark::companion {

// Number of characters that can be read before and after the text of every line; their
// values are unspecified.
constexpr std::size_t kLinePadding = 64;

// 720 fields of 360 characters: far more than in any published file, and small enough
// for the processor's L2 cache.
constexpr std::size_t kLongestLine = std::size_t{256} * 1024;

// Returns the text without the byte order mark that some editors and spreadsheets put
// before the first line.
std::string_view without_byte_order_mark(std::string_view text);

class LineBuffer {
 public:
  // Reads up to `size` more bytes of the file into `buffer` and returns their number, 0
  // at the end of the file. Its exceptions pass through.
  using ReadMore = std::function<std::size_t(char* buffer, std::size_t size)>;

  // What ends a line: a newline, the end of the file, or the length limit. After
  // kTooLong, next() must not be called again.
  enum class End { kLineEnd, kFileEnd, kTooLong };

  struct Line {
    std::string_view text;  // without its newline; valid until the next call
    End end = End::kLineEnd;
  };

  //   longest    the most characters of a line, without its newline
  explicit LineBuffer(ReadMore read_more, std::size_t longest = kLongestLine);

  // Returns the next line; nullopt at the end of the file. CR LF counts as a newline,
  // and the last line may lack its newline.
  std::optional<Line> next();

 private:
  // Moves the unread bytes to the front of the buffer and reads more after them.
  // Returns false at the end of the file.
  bool refill();

  ReadMore read_more_;
  std::size_t longest_;
  std::vector<char> buffer_;
  std::size_t begin_ = kLinePadding;  // unread bytes: begin_ to end_
  std::size_t end_ = kLinePadding;
};

}  // namespace veldmark::companion

#endif  // VELDMARK_COMPANION_LINE_BUFFER_H_
