// The choice of a variable: menu, citation, and the opening of its file.

#ifndef VELDMARK_DRIVER_VARIABLE_CHOICE_H_
#define VELDMARK_DRIVER_VARIABLE_CHOICE_H_

#include <optional>

#include "catalogue/grid_file.h"
#include "console/console_dialogue.h"
#include "driver/run_state.h"

namespace veldmark {

// S3 to S5: asks for a variable until its file is there, makes it the run's data set
// and opens the file. Throws RunEnd for the answer 0, FileFault where the file can't be
// opened. Kept on purpose: menu-99-after-a-pass. An answer out of range is not refused;
// the entry stays as it was and no file is opened.
std::optional<GridFile> choose_variable(ConsoleDialogue& console, RunState& state);

}  // namespace veldmark

#endif  // VELDMARK_DRIVER_VARIABLE_CHOICE_H_
