// The files that a run writes.

#ifndef VELDMARK_EXTRACT_OUTPUT_NAMES_H_
#define VELDMARK_EXTRACT_OUTPUT_NAMES_H_

#include <string>
#include <vector>

#include "companion/inputs.h"
#include "extract/options.h"
#include "util/part_file.h"

namespace veldmark::extract {

// Returns the files that the options name as output: NAME.TSF and NAME.XY, or the one
// file, or none for standard output.
std::vector<std::string> output_names(const Options& options);

// Returns what the output is called in messages.
std::string output_title(const Options& options);

// Returns what becomes of files that have the names of the outputs by the time when
// these are complete.
PartFile::Earlier earlier_output(const Options& options);

// Throws Failure when an output is one of `inputs`, which are being read, is no regular
// file, or exists and may not be replaced.
void check_outputs(const Options& options, const companion::Inputs& inputs);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_OUTPUT_NAMES_H_
