// Chooses a variable: shows the menu and the citation and opens the data file.

#ifndef VELDMARK_DRIVER_VARIABLE_CHOICE_H_
#define VELDMARK_DRIVER_VARIABLE_CHOICE_H_

#include <optional>

#include "catalogue/grid_file.h"
#include "console/console_dialogue.h"
#include "driver/run_state.h"

namespace veldmark {

// S3 to S5: asks for a variable until its data file exists, and makes it the current
// data set.
//
// Returns the open data file; nullopt after an answer out of range. Throws RunEnd for
// the answer 0, FileFault if the file cannot be opened.
//
// Kept on purpose: menu-99-after-a-search. An answer out of range is not refused; the
// current data set stays the same and no file is opened.
std::optional<GridFile> choose_variable(ConsoleDialogue& console, RunState& state);

}  // namespace veldmark

#endif  // VELDMARK_DRIVER_VARIABLE_CHOICE_H_
