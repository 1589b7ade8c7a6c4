// The names of the files that a run writes.

#ifndef VELDMARK_EXTRACT_OUTPUT_NAMES_H_
#define VELDMARK_EXTRACT_OUTPUT_NAMES_H_

#include <string>
#include <vector>

#include "companion/inputs.h"
#include "extract/options.h"
#include "util/part_file.h"

namespace veldmark::extract {

// Returns the output files: NAME.TSF and NAME.XY, or one file, or none for standard
// output.
std::vector<std::string> output_names(const Options& options);

// Returns the name of the output for messages.
std::string output_title(const Options& options);

// Returns what happens to an existing file when the new output is complete.
PartFile::IfExists if_output_exists(const Options& options);

// Throws Failure if an output is one of `inputs`, is not a regular file, or exists and
// must not be replaced.
void check_outputs(const Options& options, const companion::Inputs& inputs);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_OUTPUT_NAMES_H_
