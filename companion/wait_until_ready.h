// Waits for a pipe or terminal in non-blocking mode.

#ifndef VELDMARK_COMPANION_WAIT_UNTIL_READY_H_
#define VELDMARK_COMPANION_WAIT_UNTIL_READY_H_

#include <poll.h>

namespace veldmark::companion {

// Waits until `descriptor` is ready for `event`, POLLIN or POLLOUT. Also returns after
// a signal or an error: the next read or write says what it was.
inline void wait_until_ready(int descriptor, short event) {
  constexpr int kWithoutLimit = -1;
  pollfd request{.fd = descriptor, .events = event, .revents = {}};
  ::poll(&request, 1, kWithoutLimit);
}

}  // namespace veldmark::companion

#endif  // VELDMARK_COMPANION_WAIT_UNTIL_READY_H_
