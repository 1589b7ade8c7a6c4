// The whole program: arguments or an answer in, condensed files out.

#ifndef VELDMARK_TERSIFY_TERSIFY_H_
#define VELDMARK_TERSIFY_TERSIFY_H_

#include <istream>
#include <ostream>
#include <span>
#include <string>

#include "tersify/condense_file.h"
#include "tersify/grid_shape.h"
#include "tersify/progress_line.h"

namespace veldmark::tersify {

// What the program is connected to.
//
//   input       the answer to the one question
//   output      takes the question, a line for each file, the help text
//   messages    takes what went wrong, and progress
//   shape       what a complete file holds
struct Surroundings {
  std::istream& input;
  std::ostream& output;
  ProgressLine::Screen messages;
  Disk disk{};
  GridShape shape{};
};

// Runs the program.
//
//   arguments    without the program's name
// Result     the exit status: 0 all is well, 1 a file failed or nothing could be said,
//            2 wrong usage or no answer to the question, 128 and the signal's number
//            when interrupted.
// Errors     none; they become a message and a status.
int run_tersify(std::span<const std::string> arguments, Surroundings& around);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_TERSIFY_H_
