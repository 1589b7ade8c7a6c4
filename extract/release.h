// The release of the data that a file holds, as far as its name tells.

#ifndef VELDMARK_EXTRACT_RELEASE_H_
#define VELDMARK_EXTRACT_RELEASE_H_

#include <string>
#include <string_view>

#include "catalogue/variable_catalogue.h"

namespace veldmark::extract {

struct Release {
  std::string title;   // "CRU TS 4.09"; of the data set alone where the name tells none
  std::string number;  // "4.09"; empty where the name tells none
  bool is_catalogued = false;  // the one that the catalogue's texts are about
};

// Returns the release that the name of a file of the data set tells, folders in front
// allowed: 4.09 of "cru_ts4.09.1901.2024.tmp.dat.new", 3.25 of "scPDSI.3.25_bams.new".
Release release_of(const VariableEntry& entry, std::string_view file_name);

// Returns the entry with the release in the prefix of the output's headings:
// CRUts4.09tmp. A release that doesn't fit into the prefix, or isn't known, is left
// out.
VariableEntry with_release(const VariableEntry& entry, const Release& release);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_RELEASE_H_
