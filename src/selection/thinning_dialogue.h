// The dialogue that asks how many of the cells are saved.

#ifndef VELDMARK_SELECTION_THINNING_DIALOGUE_H_
#define VELDMARK_SELECTION_THINNING_DIALOGUE_H_

#include <cstdint>

#include "console/console_dialogue.h"
#include "selection/grid_geometry.h"

namespace veldmark {

// Asks for the thinning factor until the user accepts its estimate.
//
// Returns 1 or more; a smaller answer ends the run (RunEnd).
// Kept on purpose: thinning-larger-than-box. The range that the texts suggest is advice
// and isn't checked; any answer that doesn't start with n or N accepts.
std::int32_t ask_thinning_factor(ConsoleDialogue& console, const GridRanges& ranges);

}  // namespace veldmark

#endif  // VELDMARK_SELECTION_THINNING_DIALOGUE_H_
