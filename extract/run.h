// A whole run of veldmark-extract.

#ifndef VELDMARK_EXTRACT_RUN_H_
#define VELDMARK_EXTRACT_RUN_H_

#include "companion/run.h"

namespace veldmark::extract {

// Runs the program with its arguments, without the program's name. Series go to
// descriptor 1 unless --output names a file.
// Returns the exit status: 0; 1 after a failure; 2 for a wrong command line; 3 if no
// cell with data was found; 128 plus the signal's number if interrupted.
int run_extract(companion::Arguments arguments,
                const companion::Environment& environment);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_RUN_H_
