// A whole run of veldmark-extract.

#ifndef VELDMARK_EXTRACT_RUN_H_
#define VELDMARK_EXTRACT_RUN_H_

#include "companion/run.h"

namespace veldmark::extract {

// Does what the arguments say, the program's name not among them. Series without a name
// for the output go to descriptor 1.
// Returns the exit status: 0; 1 after a failure; 2 for a wrong command line; 3 when no
// cell with data was found; 128 and the signal's number when interrupted.
int run_extract(companion::Arguments arguments, const companion::Surroundings& around);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_RUN_H_
