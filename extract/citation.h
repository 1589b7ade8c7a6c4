// How to cite the data.

#ifndef VELDMARK_EXTRACT_CITATION_H_
#define VELDMARK_EXTRACT_CITATION_H_

#include <optional>
#include <string>

#include "catalogue/variable_catalogue.h"
#include "extract/options.h"

namespace veldmark::extract {

// Returns the citation of a data set in the catalogue's release, on one line without
// line end.
std::string citation_text(const VariableEntry& entry);

// Returns the same of a file of the data set. Of another release it says which that is
// and of which years, if they are known, and that its producer tells the citation;
// where the file's name tells no release, that the catalogue's is cited so.
std::string citation_of_file(const VariableEntry& entry, const std::string& file_name,
                             const std::optional<Years>& years);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_CITATION_H_
