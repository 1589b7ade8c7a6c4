// The opening of the two outputs that every search writes.

#ifndef VELDMARK_OUTPUT_SEARCH_OUTPUTS_H_
#define VELDMARK_OUTPUT_SEARCH_OUTPUTS_H_

#include <string>

#include "output/output_file.h"
#include "util/file_identity.h"

namespace veldmark {

// Both outputs of a search, opened and empty.
struct SearchOutputs {
  OutputFile time_series;
  OutputFile cell_list;
};

// Creates or empties the time-series file and the cell list, in this order, and adds
// them to `in_use`, which holds the data file.
//
// Throws FileFault where one of them can't be opened. Neither is emptied where a link
// makes one of them the data file, or both one file.
SearchOutputs open_search_outputs(const std::string& TsfName, const std::string& XyName,
                                  FilesInUse& in_use);

}  // namespace veldmark

#endif  // VELDMARK_OUTPUT_SEARCH_OUTPUTS_H_
