// Extracts the cells of a table of sites.

#ifndef VELDMARK_EXTRACT_SITES_JOB_H_
#define VELDMARK_EXTRACT_SITES_JOB_H_

#include <string>

#include "extract/job.h"

namespace veldmark::extract {

// Extracts the cell of each site and writes the output, in the order of the table. If
// that cell has no data, the nearest cell with data within the options' radius is used.
// A site without either is skipped, and a message names it.
// Returns the summary. Throws NothingFound if no site has data, Failure and
// Interrupted.
std::string extract_sites(const Job& job);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_SITES_JOB_H_
