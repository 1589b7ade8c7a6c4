// Converts the faults that the core throws to messages and to the end of the run.

#ifndef VELDMARK_DRIVER_FAULT_MESSAGES_H_
#define VELDMARK_DRIVER_FAULT_MESSAGES_H_

#include "catalogue/read_fault.h"
#include "console/console_dialogue.h"
#include "console/run_end.h"
#include "util/file_fault.h"

namespace veldmark {

// Returns the end of the run for wrong content of a grid file. It is a run-time error
// if the file ends in a skipped line. Otherwise a message is written to the console,
// and the end is quiet.
//
//   CrossesDateLine   whether the search had two column ranges
RunEnd run_end_for(ConsoleDialogue& console, const ReadFault& fault,
                   bool CrossesDateLine);

// Returns the end of the run for a file that cannot be used: a run-time error. Its
// channel follows from the extension of the file's name.
RunEnd run_end_for(const FileFault& fault);

}  // namespace veldmark

#endif  // VELDMARK_DRIVER_FAULT_MESSAGES_H_
