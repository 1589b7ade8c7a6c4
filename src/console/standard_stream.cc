#include "console/standard_stream.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <exception>

namespace veldmark {
namespace {

// Thrown from `underflow` to make the stream bad; its return value could only mean the
// end of the file.
class ReadFailure : public std::exception {};

// Returns whether to retry a call that failed with errno. If a non-blocking descriptor
// was not ready, first waits for `event`, POLLIN or POLLOUT.
bool should_retry(int descriptor, short event) {
  if (errno == EINTR) {
    return true;
  }
  if (errno != EAGAIN) {
    return false;
  }
  pollfd request{.fd = descriptor, .events = event, .revents = {}};
  return ::poll(&request, 1, -1) != -1 || errno == EINTR;
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

// Writes the buffered characters and empties the buffer. The first call finds none and
// only sets the buffer up. Returns -1 on failure.
int StandardStream::sync() {
  const char* next = pbase();
  while (next != pptr()) {
    const ssize_t count =
        ::write(descriptor_, next, static_cast<std::size_t>(pptr() - next));
    if (count != -1) {
      next += count;
    } else if (!should_retry(descriptor_, POLLOUT)) {
      return -1;
    }
  }
  setp(buffer_.data(), buffer_.data() + buffer_.size());
  return 0;
}

}  // namespace veldmark
