// The whole run, from the first screen to its end.
//
//   S0   start: the screen is cleared
//   S1   introduction
//   S2   pause, the screen is cleared, the data files are listed
//   S3   variable menu           <- a missing file leads back here
//   S4   citation and missing code
//   S5   the chosen variable is set up and its file opened; 0 ends the run
//   S6   output files are named and opened
//   S7   region and years, unless the last search's are used again
//   S8   rows and columns, and the reading of their values
//   S9   thinning
//   S10  offer of the variance test
//   S11  saving
//   S12  summary, after the files have been closed
//   S13  another search? with new parameters (to S1) or with the same (to S2)?

#ifndef VELDMARK_DRIVER_PROGRAM_DRIVER_H_
#define VELDMARK_DRIVER_PROGRAM_DRIVER_H_

#include <ostream>

#include "console/console_dialogue.h"

namespace veldmark {

// Runs the program in the current folder.
//
//   errors   where the report of a run-time error goes
//
// Returns the exit status: 0, or 255 after a run-time error.
int run_program(ConsoleDialogue& console, std::ostream& errors);

}  // namespace veldmark

#endif  // VELDMARK_DRIVER_PROGRAM_DRIVER_H_
