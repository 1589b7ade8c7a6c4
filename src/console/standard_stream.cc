#include "console/standard_stream.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <exception>

namespace veldmark {
namespace {

// An exception makes an input stream bad; a result could only tell of the end.
class ReadFailure : public std::exception {};

// May a call be made again that has failed? Where the descriptor would have had to
// wait, waits for `event` first.
bool should_retry(int descriptor, short event) {
  if (errno == EINTR) {
    return true;
  }
  if (errno != EAGAIN) {
    return false;
  }
  pollfd awaited{.fd = descriptor, .events = event, .revents = 0};
  return ::poll(&awaited, 1, -1) > 0 || errno == EINTR;
}

}  // namespace

StandardStream::int_type StandardStream::underflow() {
  ssize_t count = 0;
  do {
    count = ::read(descriptor_, buffer_.data(), buffer_.size());
  } while (count < 0 && should_retry(descriptor_, POLLIN));
  if (count < 0) {
    throw ReadFailure();
  }
  setg(buffer_.data(), buffer_.data(), buffer_.data() + count);
  return count == 0 ? traits_type::eof() : traits_type::to_int_type(buffer_.front());
}

StandardStream::int_type StandardStream::overflow(int_type character) {
  if (sync() != 0) {
    return traits_type::eof();
  }
  if (!traits_type::eq_int_type(character, traits_type::eof())) {
    *pptr() = traits_type::to_char_type(character);
    pbump(1);
  }
  return traits_type::not_eof(character);
}

// Writes what is held; the first call of `overflow` gets here with no buffer yet.
int StandardStream::sync() {
  const char* next = pbase();
  while (next != pptr()) {
    const ssize_t count =
        ::write(descriptor_, next, static_cast<std::size_t>(pptr() - next));
    if (count >= 0) {
      next += count;
    } else if (!should_retry(descriptor_, POLLOUT)) {
      return -1;
    }
  }
  setp(buffer_.data(), buffer_.data() + buffer_.size());
  return 0;
}

}  // namespace veldmark
