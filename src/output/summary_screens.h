// The summary at the end of a search.

#ifndef VELDMARK_OUTPUT_SUMMARY_SCREENS_H_
#define VELDMARK_OUTPUT_SUMMARY_SCREENS_H_

#include <cstdint>

#include "console/console_dialogue.h"
#include "output/output_names.h"

namespace veldmark {

// Writes the summary of a search.
//
//   CellsDefined   the number of its cells before thinning, sea included
//
// Kept on purpose: search-again-same-region. The heading says that the program
// terminates, although it goes on with a question.
void write_summary(ConsoleDialogue& console, std::int32_t CellsDefined,
                   std::int32_t CellsSaved, const OutputName& TsfName);

}  // namespace veldmark

#endif  // VELDMARK_OUTPUT_SUMMARY_SCREENS_H_
