// What the user sees of the data sets: the menu, the citations, and the reports of
// missing files.

#ifndef VELDMARK_CATALOGUE_CATALOGUE_SCREENS_H_
#define VELDMARK_CATALOGUE_CATALOGUE_SCREENS_H_

#include "catalogue/variable_catalogue.h"
#include "console/console_dialogue.h"

namespace veldmark {

// Shows the variable menu and leaves the cursor after its prompt.
void show_menu(ConsoleDialogue& console);

// Shows how data are to be cited, and pauses.
void show_citation(ConsoleDialogue& console, const CitationBlock& citation);

// Tells that the data file of `entry` does not exist, and pauses.
void report_missing_file(ConsoleDialogue& console, const VariableEntry& entry);

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_CATALOGUE_SCREENS_H_
