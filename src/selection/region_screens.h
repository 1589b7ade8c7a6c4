// The screens of the region dialogue: the introduction with the world diagram, and the
// box that was entered.

#ifndef VELDMARK_SELECTION_REGION_SCREENS_H_
#define VELDMARK_SELECTION_REGION_SCREENS_H_

#include "console/console_dialogue.h"
#include "selection/search_region.h"

namespace veldmark {

// Shows the introduction, and pauses.
void introduce_region(ConsoleDialogue& console);

// Shows the box of `region` with its corners.
void show_box(ConsoleDialogue& console, const SearchRegion& region);

}  // namespace veldmark

#endif  // VELDMARK_SELECTION_REGION_SCREENS_H_
