// Extraction of a box, of the globe, or of the cell that holds a point.

#ifndef VELDMARK_EXTRACT_BOX_JOB_H_
#define VELDMARK_EXTRACT_BOX_JOB_H_

#include <string>

#include "extract/job.h"

namespace veldmark::extract {

// Extracts the cells that the options ask for and writes the output.
// Returns the summary. Throws NothingFound when no cell has data, and Failure.
std::string extract_box(const Job& job);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_BOX_JOB_H_
