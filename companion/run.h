// What all command-line companions do alike: streams, exit statuses, last words.

#ifndef VELDMARK_COMPANION_RUN_H_
#define VELDMARK_COMPANION_RUN_H_

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
constexpr int kEndedBySignal = 128;  // and the signal's number

// What stands after the program's name on its command line.
using Arguments = std::span<const std::string>;

// What a program is connected to.
//
//   input       descriptor of the standard input
//   output      takes what was asked for
//   messages    takes what went wrong, notes and progress
struct Environment {
  int input = -1;
  std::ostream& output;
  ProgressLine::Screen messages;
};

// Starts a message of the program on its standard error.
std::ostream& start_message(const Environment& environment, std::string_view program);

// Does the work of a program and words what it throws; what it wrote is written out.
// Returns the exit status: that of `work` unless it throws or the output can't be
// written.
int run_reported(const Environment& environment, std::string_view program,
                 const std::function<int()>& work);

// The whole of a program's `main`.
//
//   run    does the work, given the arguments without the program's name, and returns
//          the exit status
int run_main(int argc, char** argv, std::string_view program,
             const std::function<int(Arguments, const Environment&)>& run);

}  // namespace veldmark::companion

#endif  // VELDMARK_COMPANION_RUN_H_
