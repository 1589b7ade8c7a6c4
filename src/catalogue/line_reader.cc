#include "catalogue/line_reader.h"

#include <algorithm>
#include <utility>

#include "util/piece_size.h"

namespace veldmark {
namespace {

std::string_view without_carriage_return(std::string_view line) {
  if (line.ends_with('\r')) {
    line.remove_suffix(1);
  }
  return line;
}

}  // namespace

LineReader::LineReader(ReadMore read_more, std::size_t max_length)
    : read_more_(std::move(read_more)), max_length_(max_length), buffer_(kPieceSize) {}

std::optional<LineReader::Line> LineReader::next() {
  // One more, for the carriage return of a line of the maximum length.
  const std::size_t capacity = max_length_ + 1;
  if (begin_ == end_ && !refill()) {
    return std::nullopt;
  }
  split_line_.clear();
  for (;;) {
    const std::string_view text = rest();
    const std::size_t length = text.find('\n');
    const bool has_newline = length != std::string_view::npos;
    begin_ += has_newline ? length + 1 : text.size();
    if (has_newline && split_line_.empty()) {
      const std::string_view line = without_carriage_return(text.substr(0, length));
      return Line{line.substr(0, max_length_), true};
    }
    const std::size_t left = capacity - std::min(capacity, split_line_.size());
    split_line_.append(text.substr(0, std::min(length, left)));
    if (has_newline || !refill()) {
      const std::string_view line = without_carriage_return(split_line_);
      return Line{line.substr(0, max_length_), has_newline};
    }
  }
}

bool LineReader::skip() {
  if (begin_ == end_ && !refill()) {
    return false;
  }
  do {
    const std::size_t length = rest().find('\n');
    if (length != std::string_view::npos) {
      begin_ += length + 1;
      return true;
    }
  } while (refill());
  return true;  // the last line, without a newline
}

bool LineReader::refill() {
  begin_ = 0;
  end_ = read_more_(buffer_.data(), buffer_.size());
  return end_ > 0;
}

std::string_view LineReader::rest() const {
  return {buffer_.data() + begin_, end_ - begin_};
}

}  // namespace veldmark
