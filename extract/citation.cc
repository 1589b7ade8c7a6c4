#include "extract/citation.h"

#include <string_view>

#include "extract/release.h"
#include "util/in_quotes.h"

namespace veldmark::extract {

std::string citation_text(const VariableEntry& entry) {
  constexpr std::string_view kIntroduction = "The proper citation for these data is:";
  std::string text;
  for (const std::string_view line : entry.citation.lines) {
    const std::size_t begin = line.find_first_not_of(' ');
    if (begin == std::string_view::npos) {
      continue;
    }
    const std::size_t end = line.find_last_not_of(' ') + 1;
    const std::string_view words = line.substr(begin, end - begin);
    if (words != kIntroduction) {
      text += (text.empty() ? "" : " ") + std::string(words);
    }
  }
  return text;
}

std::string citation_of_file(const VariableEntry& entry, const std::string& file_name,
                             const std::optional<Years>& years) {
  const Release release = release_of(entry, file_name);
  if (release.is_catalogued) {
    return citation_text(entry);
  }
  const std::string long_name(entry.long_name);
  if (release.number.empty()) {
    const Release known = release_of(entry, entry.DataFileName.view());
    return long_name + " from " + in_quotes(file_name) +
           ", whose name tells no release. " + known.title +
           " is cited as: " + citation_text(entry);
  }
  const std::string of_years = years ? ", " + years_text(*years) : "";
  return release.title + ", " + long_name + of_years +
         (entry.is_in_cru_ts_distribution
              ? "; University of East Anglia Climatic Research Unit, which tells how "
                "to "
                "cite this release"
              : "; its producers tell how to cite this release");
}

}  // namespace veldmark::extract
