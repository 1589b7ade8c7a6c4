// The whole run, from the first screen to its end.

#ifndef VELDMARK_DRIVER_PROGRAM_DRIVER_H_
#define VELDMARK_DRIVER_PROGRAM_DRIVER_H_

#include <ostream>

#include "console/console_dialogue.h"

namespace veldmark {

// Runs the program in the current folder.
//
//   errors   where the report of a run-time error goes
//
// Result     the exit status: 0, or 255 after a run-time error.
int run_program(ConsoleDialogue& console, std::ostream& errors);

}  // namespace veldmark

#endif  // VELDMARK_DRIVER_PROGRAM_DRIVER_H_
