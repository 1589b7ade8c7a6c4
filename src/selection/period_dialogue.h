// The dialogue that asks for the years.

#ifndef VELDMARK_SELECTION_PERIOD_DIALOGUE_H_
#define VELDMARK_SELECTION_PERIOD_DIALOGUE_H_

#include <cstdint>

#include "console/console_dialogue.h"
#include "selection/search_region.h"

namespace veldmark {

// Asks for FYOD and LYOD until the user confirms them.
//
//   LastDataYear   the last year of the data, which the messages name
//
// Returns 1901 <= FYOD <= LYOD <= LastDataYear. After an answer that is not an integer
// it asks again without a message, after one out of range with a warning. Throws RunEnd
// at the end of the input.
//
// Kept on purpose: year-warnings. The warning for FYOD names the years as if both were
// excluded.
YearSpan ask_year_span(ConsoleDialogue& console, std::int32_t LastDataYear);

}  // namespace veldmark

#endif  // VELDMARK_SELECTION_PERIOD_DIALOGUE_H_
