// How to cite the data.

#ifndef VELDMARK_EXTRACT_CITATION_H_
#define VELDMARK_EXTRACT_CITATION_H_

#include <optional>
#include <string>

#include "catalogue/variable_catalogue.h"
#include "extract/options.h"

namespace veldmark::extract {

// Returns the citation of the catalogue's release of a data set, as one line without a
// newline.
std::string citation_text(const VariableEntry& entry);

// Returns the citation for a file of the data set. For another release than the
// catalogue's, it names the release and its years, if known, and refers to the
// producer; if the file's name has no release, it says so and gives the catalogue's
// citation.
std::string citation_of_file(const VariableEntry& entry, const std::string& file_name,
                             const std::optional<Years>& years);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_CITATION_H_
