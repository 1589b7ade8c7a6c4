// A pseudo-terminal for a test.

#ifndef VELDMARK_TESTS_SUPPORT_TERMINAL_H_
#define VELDMARK_TESTS_SUPPORT_TERMINAL_H_

#include <string>

namespace veldmark::testing {

class Terminal {
 public:
  Terminal();
  ~Terminal();
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;
  Terminal(Terminal&&) = delete;
  Terminal& operator=(Terminal&&) = delete;

  // Returns the descriptor that a program writes to.
  [[nodiscard]] int descriptor() const { return program_end_; }

  // Returns what was written so far. Requires that no one writes any more.
  std::string screen();

 private:
  int screen_end_ = -1;
  int program_end_ = -1;
};

}  // namespace veldmark::testing

#endif  // VELDMARK_TESTS_SUPPORT_TERMINAL_H_
