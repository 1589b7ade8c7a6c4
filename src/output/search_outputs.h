// Opens the two output files that every search writes.

#ifndef VELDMARK_OUTPUT_SEARCH_OUTPUTS_H_
#define VELDMARK_OUTPUT_SEARCH_OUTPUTS_H_

#include <string>

#include "output/output_file.h"
#include "util/file_identity.h"

namespace veldmark {

// Both output files of a search, open and empty.
struct SearchOutputs {
  OutputFile time_series;
  OutputFile cell_list;
};

// Creates or truncates the time-series file and the cell list, in this order, and adds
// them to `in_use`, which contains the data file.
//
// Throws FileFault if one of them cannot be opened. If one of them is a link to the
// data file, or both are the same file, neither is truncated.
SearchOutputs open_search_outputs(const std::string& TsfName, const std::string& XyName,
                                  FilesInUse& in_use);

}  // namespace veldmark

#endif  // VELDMARK_OUTPUT_SEARCH_OUTPUTS_H_
