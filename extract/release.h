// The release of the data in a file, taken from its name.

#ifndef VELDMARK_EXTRACT_RELEASE_H_
#define VELDMARK_EXTRACT_RELEASE_H_

#include <string>
#include <string_view>

#include "catalogue/variable_catalogue.h"

namespace veldmark::extract {

struct Release {
  std::string title;   // "CRU TS 4.09"; only "CRU TS" if the name has no release
  std::string number;  // "4.09"; empty if the name has none
  bool is_catalogued = false;  // the release that the catalogue describes
};

// Returns the release in the name of a file of the data set; folders before it are
// ignored: 4.09 of "cru_ts4.09.1901.2024.tmp.dat.new", 3.25 of "scPDSI.3.25_bams.new".
Release release_of(const VariableEntry& entry, std::string_view file_name);

// Returns `entry` with the release in the prefix of the output's headings:
// CRUts4.09tmp. A release that is unknown, or too long for the prefix, is left out.
VariableEntry with_release(const VariableEntry& entry, const Release& release);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_RELEASE_H_
