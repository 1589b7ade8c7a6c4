// One published file to its condensed copy, NAME to NAME.new.

#ifndef VELDMARK_TERSIFY_CONDENSE_FILE_H_
#define VELDMARK_TERSIFY_CONDENSE_FILE_H_

#include "tersify/condense_job.h"

namespace veldmark::tersify {

// Condenses a file. The copy is written beside its name, to NAME.new.part, and gets its
// name when it is complete. A last line without line end counts when it is whole.
//
// Throws Failure that names the file, and in it the line and the field; Interrupted
// when an InterruptWatch catches a signal. There is no NAME.new.part of this run
// afterwards, and an earlier NAME.new stays.
Condensed condense_file(const CondenseJob& job);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_CONDENSE_FILE_H_
