// Signals that interrupt system calls.

#ifndef VELDMARK_TESTS_SUPPORT_INTERRUPTIONS_H_
#define VELDMARK_TESTS_SUPPORT_INTERRUPTIONS_H_

#include <pthread.h>
#include <signal.h>
#include <sys/time.h>

#include <thread>

namespace veldmark::testing {

// While it exists, this thread gets a signal every two milliseconds, which interrupts
// blocking system calls.
class Interruptions {
 public:
  Interruptions() {
    struct sigaction action {};
    action.sa_handler = [](int /*number*/) {};
    ::sigaction(SIGALRM, &action, &before_);
    start(2000);
  }
  ~Interruptions() {
    start(0);
    ::sigaction(SIGALRM, &before_, nullptr);
  }
  Interruptions(const Interruptions&) = delete;
  Interruptions& operator=(const Interruptions&) = delete;

 private:
  static void start(suseconds_t microseconds) {
    const itimerval timer{.it_interval = {0, microseconds},
                          .it_value = {0, microseconds}};
    ::setitimer(ITIMER_REAL, &timer, nullptr);
  }

  struct sigaction before_ {};
};

// Runs `action` in a thread that gets no signals.
template <typename Action>
std::thread undisturbed(Action action) {
  sigset_t alarm;
  sigset_t before;
  ::sigemptyset(&alarm);
  ::sigaddset(&alarm, SIGALRM);
  ::pthread_sigmask(SIG_BLOCK, &alarm, &before);
  std::thread thread(action);
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
  return thread;
}

}  // namespace veldmark::testing

#endif  // VELDMARK_TESTS_SUPPORT_INTERRUPTIONS_H_
