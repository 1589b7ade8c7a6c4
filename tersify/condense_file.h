// Makes the condensed copy of one published file.

#ifndef VELDMARK_TERSIFY_CONDENSE_FILE_H_
#define VELDMARK_TERSIFY_CONDENSE_FILE_H_

#include "tersify/condense_job.h"

namespace veldmark::tersify {

// Condenses a file to a copy named as CondenseJob says. The copy is written to
// COPY.part and renamed when it is complete. The last line of a published text may lack
// its newline.
//
// Throws Failure, which names the file and, for a fault in a text, the line and the
// field; and Interrupted when an InterruptWatch catches a signal. After either,
// COPY.part is removed and an existing copy is unchanged.
Condensed condense_file(const CondenseJob& job);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_CONDENSE_FILE_H_
