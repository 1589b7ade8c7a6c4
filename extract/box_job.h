// Extracts a box, the globe, or the cell that contains a point.

#ifndef VELDMARK_EXTRACT_BOX_JOB_H_
#define VELDMARK_EXTRACT_BOX_JOB_H_

#include <string>

#include "extract/job.h"

namespace veldmark::extract {

// Extracts the requested cells and writes the output.
// Returns the summary. Throws NothingFound if no cell has data, and Failure.
std::string extract_box(const Job& job);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_BOX_JOB_H_
