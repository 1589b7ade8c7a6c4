// How to cite the data.

#ifndef VELDMARK_EXTRACT_CITATION_H_
#define VELDMARK_EXTRACT_CITATION_H_

#include <string>

#include "catalogue/variable_catalogue.h"

namespace veldmark::extract {

// Returns the citation of a data set on one line, without line end.
std::string citation_text(const VariableEntry& entry);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_CITATION_H_
