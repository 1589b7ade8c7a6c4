#include "util/interrupt_watch.h"

#include <cstddef>

namespace veldmark {
namespace {

// A signal handler may safely write only to such a variable.
volatile std::sig_atomic_t& noted_signal() {
  static volatile std::sig_atomic_t number = 0;
  return number;
}

void note_signal(int number) { noted_signal() = number; }

}  // namespace

InterruptWatch::InterruptWatch() {
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    const int number = kSignals.at(i);
    struct sigaction action {};
    action.sa_handler = number == SIGXFSZ ? SIG_IGN : note_signal;
    sigaction(number, nullptr, &before_.at(i));
    if (before_.at(i).sa_handler != SIG_IGN) {
      sigaction(number, &action, nullptr);
    }
  }
}

InterruptWatch::~InterruptWatch() {
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    sigaction(kSignals.at(i), &before_.at(i), nullptr);
  }
  noted_signal() = 0;
}

int InterruptWatch::signal_caught() { return noted_signal(); }

void InterruptWatch::throw_if_caught() {
  if (const int number = signal_caught(); number != 0) {
    throw Interrupted(number);
  }
}

}  // namespace veldmark
