// Screens about the data sets: the menu, the citations and the messages about missing
// files.

#ifndef VELDMARK_CATALOGUE_CATALOGUE_SCREENS_H_
#define VELDMARK_CATALOGUE_CATALOGUE_SCREENS_H_

#include "catalogue/variable_catalogue.h"
#include "console/console_dialogue.h"

namespace veldmark {

// Shows the variable menu and leaves the cursor after its prompt.
void show_menu(ConsoleDialogue& console);

// Shows how to cite the data, and pauses.
void show_citation(ConsoleDialogue& console, const CitationBlock& citation);

// Shows that the data file of `entry` does not exist, and pauses.
void report_missing_file(ConsoleDialogue& console, const VariableEntry& entry);

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_CATALOGUE_SCREENS_H_
