// Catches the signals that ask a program to stop (SIGINT, SIGTERM, SIGHUP, SIGQUIT,
// SIGXCPU), so that it can remove a half-written file before it exits.

#ifndef VELDMARK_UTIL_INTERRUPT_WATCH_H_
#define VELDMARK_UTIL_INTERRUPT_WATCH_H_

#include <array>
#include <csignal>
#include <exception>

namespace veldmark {

// Thrown after a signal asked the program to stop.
struct Interrupted : std::exception {
  explicit Interrupted(int number) : signal(number) {}
  int signal;  // its number
};

// Records a stop signal while it exists; its destructor restores the old handlers. A
// signal that was ignored before (nohup) stays ignored. SIGXFSZ is ignored meanwhile,
// so that hitting the file size limit shows up as a failed write. Requires that no
// other InterruptWatch exists.
class InterruptWatch {
 public:
  InterruptWatch();
  ~InterruptWatch();
  InterruptWatch(const InterruptWatch&) = delete;
  InterruptWatch& operator=(const InterruptWatch&) = delete;
  InterruptWatch(InterruptWatch&&) = delete;
  InterruptWatch& operator=(InterruptWatch&&) = delete;

  // Returns the number of the signal that was caught; 0 if there was none, or if no
  // InterruptWatch exists.
  [[nodiscard]] static int signal_caught();

  // Throws Interrupted if a signal was caught.
  static void throw_if_caught();

 private:
  static constexpr std::array kSignals = {SIGINT,  SIGTERM, SIGHUP,
                                          SIGQUIT, SIGXCPU, SIGXFSZ};
  std::array<struct sigaction, kSignals.size()> before_{};
};

}  // namespace veldmark

#endif  // VELDMARK_UTIL_INTERRUPT_WATCH_H_
