// Reads a text file line by line. Lines may contain anything and have any length.

#ifndef VELDMARK_CATALOGUE_LINE_READER_H_
#define VELDMARK_CATALOGUE_LINE_READER_H_

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace veldmark {

class LineReader {
 public:
  // Reads up to `size` more bytes of the file into `buffer`. Returns the number of
  // bytes read, 0 at the end of the file. May throw.
  using ReadMore = std::function<std::size_t(char* buffer, std::size_t size)>;

  struct Line {
    std::string_view text;  // without the newline; valid until the next call
    bool has_newline{};
  };

  // Longer lines are truncated to `max_length` characters.
  LineReader(ReadMore read_more, std::size_t max_length);

  // Returns the next line; nullopt at the end of the file. A carriage return before the
  // newline is removed with it. The last line may lack its newline.
  std::optional<Line> next();

  // Skips a line of any length. Returns false at the end of the file.
  bool skip();

 private:
  // Refills the empty buffer. Returns false at the end of the file.
  bool refill();
  [[nodiscard]] std::string_view rest() const;

  ReadMore read_more_;
  std::size_t max_length_;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;  // the unread part of the buffer: begin_ to end_
  std::size_t end_ = 0;
  std::string split_line_;  // a line that did not end in the previous buffer
};

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_LINE_READER_H_
