// The whole run, from the first screen to the exit status.
//
//   S0   clear the screen
//   S1   show the introduction
//   S2   pause, clear the screen, list the data files
//   S3   show the variable menu (again after a missing file)
//   S4   show the citation, set the missing code
//   S5   set up the variable and open its file; the answer 0 ends the run
//   S6   name and open the output files
//   S7   ask for region and years, unless those of the last search are used again
//   S8   find rows and columns, read their values
//   S9   ask for the thinning factor
//   S10  offer the variance test
//   S11  save the cells
//   S12  close the files, show the summary
//   S13  another search? with new parameters (to S1) or with the same (to S2)?

#ifndef VELDMARK_DRIVER_PROGRAM_DRIVER_H_
#define VELDMARK_DRIVER_PROGRAM_DRIVER_H_

#include <ostream>

#include "console/console_dialogue.h"

namespace veldmark {

// Runs the program in the current folder.
//
//   errors   receives the report of a run-time error
//
// Returns the exit status: 0, or 255 after a run-time error.
int run_program(ConsoleDialogue& console, std::ostream& errors);

}  // namespace veldmark

#endif  // VELDMARK_DRIVER_PROGRAM_DRIVER_H_
