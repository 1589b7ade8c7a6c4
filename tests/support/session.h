// Runs whole sessions of the program in the test's own process and keeps what a person
// at the terminal would see.

#ifndef VELDMARK_TESTS_SUPPORT_SESSION_H_
#define VELDMARK_TESTS_SUPPORT_SESSION_H_

#include <string>
#include <vector>

namespace veldmark::testing {

struct SessionResult {
  // The screen, a string per line:
  //   |text|          a line of output with its line end
  //   |text           output whose line end never came
  //   |text<answer>   a prompt and the answer that was read there; <RETURN> is an empty
  //                   line, <EOF> the end of the input, <text\EOF> a last line without
  //                   line end, \t and \r a tab and a carriage return; answers read
  //                   after a finished line stand behind its bar
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
