// Makes the condensed copy of one published file, by default NAME.new of NAME.

#ifndef VELDMARK_TERSIFY_CONDENSE_FILE_H_
#define VELDMARK_TERSIFY_CONDENSE_FILE_H_

#include "tersify/condense_job.h"

namespace veldmark::tersify {

// Condenses a file. The copy is written to NAME.new.part and renamed when it is
// complete. The last line may lack its newline.
//
// Throws Failure that names the file, the line and the field, and Interrupted when an
// InterruptWatch catches a signal. After either, NAME.new.part is removed and an
// earlier NAME.new is unchanged.
Condensed condense_file(const CondenseJob& job);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_CONDENSE_FILE_H_
