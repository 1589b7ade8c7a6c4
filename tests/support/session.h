// Runs whole sessions of the program within the test and records what a user at the
// terminal would see.

#ifndef VELDMARK_TESTS_SUPPORT_SESSION_H_
#define VELDMARK_TESTS_SUPPORT_SESSION_H_

#include <string>
#include <vector>

namespace veldmark::testing {

struct SessionResult {
  // The screen, one string per line:
  //   |text|          a line of output with its newline
  //   |text           output without a newline
  //   |text<answer>   a prompt and the answer that was read there; <RETURN> is an empty
  //                   line, <EOF> the end of the input, <text\EOF> a last line without
  //                   a newline, \t and \r a tab and a carriage return; an answer
  //                   that is read after a newline is appended after the second
  //                   bar
  //   $ command       a shell command
  std::vector<std::string> screen;
  std::string output;  // the plain characters written to standard output
  std::string errors;  // standard error
  int status = 0;
};

// Runs the program in the current folder. `answers` are given in the notation of the
// screen's answers, without the angle brackets; after the last the input ends.
SessionResult run_session(const std::vector<std::string>& answers);

}  // namespace veldmark::testing

#endif  // VELDMARK_TESTS_SUPPORT_SESSION_H_
