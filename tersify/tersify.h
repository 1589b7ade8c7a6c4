// The program as a function, so that tests can run it in memory.

#ifndef VELDMARK_TERSIFY_TERSIFY_H_
#define VELDMARK_TERSIFY_TERSIFY_H_

#include "companion/run.h"
#include "tersify/disk_space.h"
#include "tersify/grid_shape.h"

namespace veldmark::tersify {

// Settings that tests replace.
//
//   free_space    returns the free space of a disk
//   shape         the extent of a complete file
struct Settings {
  FreeSpace free_space = system_free_space;
  GridShape shape{};
};

// Runs the program.
//
//   arguments    without the program's name
//   environment  its input is read for the answer to the one question; its output
//                receives the question, a line for each file, and the help text
//
// Returns the exit status: 0 success, 1 a file failed or the output can't be written, 2
// wrong usage or no answer to the question, 128 plus the signal's number when
// interrupted. Exceptions are reported as messages and statuses.
int run_tersify(companion::Arguments arguments,
                const companion::Environment& environment,
                const Settings& settings = {});

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_TERSIFY_H_
