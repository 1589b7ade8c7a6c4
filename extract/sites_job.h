// Extracts the cells of a table of sites.

#ifndef VELDMARK_EXTRACT_SITES_JOB_H_
#define VELDMARK_EXTRACT_SITES_JOB_H_

#include <string>

#include "extract/job.h"

namespace veldmark::extract {

// Extracts the cell of each site and writes the output, in the order of the table. A
// site whose cell has no data is left out and named, unless the options allow the
// nearest cell with data within a radius.
// Returns the summary. Throws NothingFound if no site has data, and Failure.
std::string extract_sites(const Job& job);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_SITES_JOB_H_
