#include "companion/standard_stream.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>

#include "companion/wait_until_ready.h"

namespace veldmark::companion {

// The first character finds no buffer, and write_out() then sets it.
StandardStream::StandardStream(int descriptor) : descriptor_(descriptor) {}

StandardStream::~StandardStream() { write_out(); }

StandardStream::int_type StandardStream::overflow(int_type character) {
  if (!write_out()) {
    return traits_type::eof();
  }
  if (!traits_type::eq_int_type(character, traits_type::eof())) {
    sputc(traits_type::to_char_type(character));
  }
  return traits_type::not_eof(character);
}

int StandardStream::sync() { return write_out() ? 0 : -1; }

// Discards the buffer even after a failed write, so that a later message doesn't repeat
// its text.
bool StandardStream::write_out() {
  const char* next = pbase();
  const char* const end = pptr();
  setp(buffer_.data(), buffer_.data() + buffer_.size());
  while (next < end) {
    const ssize_t count =
        ::write(descriptor_, next, static_cast<std::size_t>(end - next));
    if (count != -1) {
      next += count;
    } else if (errno == EAGAIN) {
      wait_until_ready(descriptor_, POLLOUT);
    } else if (errno != EINTR) {
      return false;
    }
  }
  return true;
}

}  // namespace veldmark::companion
