// The whole program: arguments or an answer in, condensed files out.

#ifndef VELDMARK_TERSIFY_TERSIFY_H_
#define VELDMARK_TERSIFY_TERSIFY_H_

#include "companion/run.h"
#include "tersify/disk_space.h"
#include "tersify/grid_shape.h"

namespace veldmark::tersify {

// What tests replace.
//
//   free_space    how much room a disk has
//   shape         what a complete file holds
struct Settings {
  FreeSpace free_space = system_free_space;
  GridShape shape{};
};

// Runs the program.
//
//   arguments    without the program's name
//   environment       the input is the answer to the one question; the output takes the
//                question, a line for each file, the help text
//
// Returns the exit status: 0 all is well, 1 a file failed or nothing could be said, 2
// wrong usage or no answer to the question, 128 and the signal's number when
// interrupted. What is thrown on the way becomes a message and a status.
int run_tersify(companion::Arguments arguments,
                const companion::Environment& environment,
                const Settings& settings = {});

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_TERSIFY_H_
