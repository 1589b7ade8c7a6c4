// A whole run of veldmark-extract.

#ifndef VELDMARK_EXTRACT_RUN_H_
#define VELDMARK_EXTRACT_RUN_H_

#include <ostream>
#include <span>
#include <string>

#include "extract/block_reader.h"

namespace veldmark::extract {

// What the program is connected to, but for the output, which is a file or standard
// output.
struct Surroundings {
  std::ostream& output;    // takes help, version and citation
  std::ostream& messages;  // takes what went wrong, notes and the summary
};

// Does what the arguments say, the program's name not among them.
// Returns the exit status: 0; 1 after a failure; 2 for a wrong command line; 3 when no
// cell with data was found.
int run_extract(std::span<const std::string> arguments, const Surroundings& around);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_RUN_H_
