// What all command-line companions share: streams, exit statuses, error messages.

#ifndef VELDMARK_COMPANION_RUN_H_
#define VELDMARK_COMPANION_RUN_H_

#include <unistd.h>

#include <functional>
#include <ostream>
#include <span>
#include <string>
#include <string_view>

#include "companion/progress_line.h"

namespace veldmark::companion {

// The exit statuses.
constexpr int kSuccess = 0;
constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;
constexpr int kEndedBySignal = 128;  // plus the signal's number

// The command-line arguments after the program's name.
using Arguments = std::span<const std::string>;

// The streams of a program; tests replace them.
//
//   input       descriptor of the standard input
//   output      the standard output: results
//   messages    the standard error: errors, notes and progress
struct Environment {
  int input = STDIN_FILENO;
  std::ostream& output;
  ProgressLine::Screen messages;
};

// Flushes the output, writes "PROGRAM: " to the message stream and returns that stream.
std::ostream& start_message(const Environment& environment, std::string_view program);

// Runs `work`, reports its exceptions and flushes the output. Returns the exit status:
// the result of `work`, or a failure status if it throws or if the output can't be
// written.
int run_reported(const Environment& environment, std::string_view program,
                 const std::function<int()>& work);

// Implements a program's `main`. Returns the exit status.
//
//   run    does the work, given the arguments without the program's name, and returns
//          the exit status
int run_main(int argc, char** argv, std::string_view program,
             const std::function<int(Arguments, const Environment&)>& run);

}  // namespace veldmark::companion

#endif  // VELDMARK_COMPANION_RUN_H_
