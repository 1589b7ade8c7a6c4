#include "companion/line_buffer.h"

#include <cstring>
#include <utility>

namespace veldmark::companion {
namespace {

std::string_view without_carriage_return(std::string_view text) {
  if (text.ends_with('\r')) {
    text.remove_suffix(1);
  }
  return text;
}

}  // namespace

std::string_view without_byte_order_mark(std::string_view text) {
  constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";
  if (text.starts_with(kByteOrderMark)) {
    text.remove_prefix(kByteOrderMark.size());
  }
  return text;
}

LineBuffer::LineBuffer(ReadMore read_more, std::size_t longest)
    : read_more_(std::move(read_more)),
      longest_(longest),
      buffer_(kLinePadding + longest + kLinePadding) {}

std::optional<LineBuffer::Line> LineBuffer::next() {
  std::size_t searched = 0;  // leading bytes of `rest` known to hold no newline
  for (;;) {
    const std::string_view rest(buffer_.data() + begin_, end_ - begin_);
    // memchr is vectorised; find('\n') may not be.
    const void* const found =
        std::memchr(rest.data() + searched, '\n', rest.size() - searched);
    if (found != nullptr) {
      const auto length =
          static_cast<std::size_t>(static_cast<const char*>(found) - rest.data());
      begin_ += length + 1;
      return Line{without_carriage_return(rest.substr(0, length)), End::kLineEnd};
    }
    searched = rest.size();
    if (searched == longest_) {
      return Line{rest, End::kTooLong};
    }
    if (!refill()) {
      break;
    }
  }
  const std::string_view last(buffer_.data() + begin_, end_ - begin_);
  begin_ = end_;
  if (last.empty()) {
    return std::nullopt;
  }
  return Line{without_carriage_return(last), End::kFileEnd};
}

bool LineBuffer::refill() {
  const std::size_t rest = end_ - begin_;
  std::memmove(buffer_.data() + kLinePadding, buffer_.data() + begin_, rest);
  begin_ = kLinePadding;
  end_ = begin_ + rest;
  const std::size_t count = read_more_(buffer_.data() + end_, longest_ - rest);
  end_ += count;
  return count > 0;
}

}  // namespace veldmark::companion
