// Notices a request to stop (SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGXCPU) instead of
// dying of it, so that a half-written file can be removed first.

#ifndef VELDMARK_UTIL_INTERRUPT_WATCH_H_
#define VELDMARK_UTIL_INTERRUPT_WATCH_H_

#include <array>
#include <csignal>
#include <exception>

namespace veldmark {

// Thrown where a request to stop is obeyed.
//
//   signal    its number
struct Interrupted : std::exception {
  explicit Interrupted(int number) : signal(number) {}
  int signal;
};

// While it lives, a stop signal is noted; afterwards signals act as before. A signal
// that the caller had ignored (nohup) stays ignored. SIGXFSZ is ignored meanwhile: a
// file that hits the size limit is then a failed write with a reason like any other.
// Requires that there is one at a time.
class InterruptWatch {
 public:
  InterruptWatch();
  ~InterruptWatch();
  InterruptWatch(const InterruptWatch&) = delete;
  InterruptWatch& operator=(const InterruptWatch&) = delete;
  InterruptWatch(InterruptWatch&&) = delete;
  InterruptWatch& operator=(InterruptWatch&&) = delete;

  // Returns the number of the signal that asked to stop; 0 for none, and where there is
  // no watch.
  [[nodiscard]] static int signal_caught();

  // Throws Interrupted when a signal asked to stop.
  static void obey();

 private:
  static constexpr std::array kSignals = {SIGINT,  SIGTERM, SIGHUP,
                                          SIGQUIT, SIGXCPU, SIGXFSZ};
  std::array<struct sigaction, kSignals.size()> before_{};
};

}  // namespace veldmark

#endif  // VELDMARK_UTIL_INTERRUPT_WATCH_H_
