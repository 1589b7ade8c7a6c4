// The dialogue that asks for the years.

#ifndef VELDMARK_SELECTION_PERIOD_DIALOGUE_H_
#define VELDMARK_SELECTION_PERIOD_DIALOGUE_H_

#include <cstdint>

#include "console/console_dialogue.h"
#include "selection/search_region.h"

namespace veldmark {

// Asks for FYOD and LYOD until the user confirms them.
//
//   LastDataYear   the last year of the data; the messages name it, the answers are
//                  tested against it
//
// Returns 1901 <= FYOD <= LYOD <= LastDataYear, all included. An answer that is no
// integer
//            is asked again without a word, one out of range with a warning; the end
//            of the input ends the run (RunEnd).
// Kept on purpose: year-warnings. The warning for FYOD names both years as if they were
// excluded.
YearSpan ask_year_span(ConsoleDialogue& console, std::int32_t LastDataYear);

}  // namespace veldmark

#endif  // VELDMARK_SELECTION_PERIOD_DIALOGUE_H_
