#include "extract/citation.h"

#include <string_view>

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

}  // namespace veldmark::extract
