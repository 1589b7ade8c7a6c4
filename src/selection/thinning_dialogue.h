// The dialogue that asks for the thinning factor.

#ifndef VELDMARK_SELECTION_THINNING_DIALOGUE_H_
#define VELDMARK_SELECTION_THINNING_DIALOGUE_H_

#include <cstdint>

#include "console/console_dialogue.h"
#include "selection/grid_geometry.h"

namespace veldmark {

// Asks for the thinning factor until the user accepts the estimated number of cells.
//
// Returns 1 or more. Throws RunEnd for a smaller answer and at the end of the input.
//
// Kept on purpose: thinning-larger-than-box. The range that the text suggests is not
// enforced. Any answer that does not start with n or N accepts the estimate.
std::int32_t ask_thinning_factor(ConsoleDialogue& console, const GridRanges& ranges);

}  // namespace veldmark

#endif  // VELDMARK_SELECTION_THINNING_DIALOGUE_H_
