// Reads a text file line by line, whatever its lines hold and however long they are.

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
  // Reads up to `size` further bytes of the file into `buffer`. Returns their number, 0
  // at the end of the file. May throw.
  using ReadMore = std::function<std::size_t(char* buffer, std::size_t size)>;

  struct Line {
    std::string_view text;  // without line end; valid until the next call
    bool has_newline = false;
  };

  // Lines longer than `max_length` characters are cut there.
  LineReader(ReadMore read_more, std::size_t max_length);

  // Reads a line. A carriage return before its end belongs to the line end; the last
  // line may lack its line end. Returns nullopt at the end of the file.
  std::optional<Line> next();

  // Skips a line of any length. Returns false at the end of the file.
  bool skip();

 private:
  // Fills the empty buffer. Returns false at the end of the file.
  bool refill();
  [[nodiscard]] std::string_view rest() const;

  ReadMore read_more_;
  std::size_t max_length_;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;  // what is not yet read of the buffer: begin_ up to end_
  std::size_t end_ = 0;
  std::string split_line_;  // a line that lies across two buffers
};

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_LINE_READER_H_
