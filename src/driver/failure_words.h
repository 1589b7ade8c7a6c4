// What the user is told of the faults that the core reports.

#ifndef VELDMARK_DRIVER_FAILURE_WORDS_H_
#define VELDMARK_DRIVER_FAILURE_WORDS_H_

#include "catalogue/read_fault.h"
#include "console/console_dialogue.h"
#include "console/run_end.h"
#include "util/file_fault.h"

namespace veldmark {

// Tells on the console what is wrong with a grid file, where there are words for it,
// and returns the run's end: quiet after such words, otherwise a run-time error.
//
//   CrossesDateLine   whether the search's columns were in two ranges
RunEnd run_end_for(ConsoleDialogue& console, const ReadFault& fault,
                   bool CrossesDateLine);

// Returns the run's end by a file that cannot be used: a run-time error, which names
// the channel by the ending of the file's name.
RunEnd run_end_for(const FileFault& fault);

}  // namespace veldmark

#endif  // VELDMARK_DRIVER_FAILURE_WORDS_H_
