#include "extract/release.h"

#include <algorithm>
#include <regex>

namespace veldmark::extract {
namespace {

// The number in a file's name; empty where there is none. A number of four digits
// behind it is a year.
std::string release_number(const VariableEntry& entry, std::string_view file_name) {
  constexpr auto kFlags = std::regex::ECMAScript | std::regex::icase;
  static const std::regex kCruTs(R"(cru_?ts_?(\d{1,2}([._]\d{1,2})+)(?!\d))", kFlags);
  static const std::regex kDrought(R"(scpdsi[._](\d{1,2}([._]\d{1,2})+)(?!\d))",
                                   kFlags);
  const std::string name(file_name.substr(file_name.rfind('/') + 1));  // npos + 1 is 0
  std::smatch found;
  if (!std::regex_search(name, found,
                         entry.is_in_cru_ts_distribution ? kCruTs : kDrought)) {
    return "";
  }
  std::string number = found[1];
  std::replace(number.begin(), number.end(), '_', '.');
  return number;
}

}  // namespace

Release release_of(const VariableEntry& entry, std::string_view file_name) {
  Release release{.title = entry.is_in_cru_ts_distribution ? "CRU TS" : "scPDSI",
                  .number = release_number(entry, file_name)};
  if (!release.number.empty()) {
    release.title += " " + release.number;
    release.is_catalogued =
        release.number == release_number(entry, entry.DataFileName.view());
  }
  return release;
}

VariableEntry with_release(const VariableEntry& entry, const Release& release) {
  VariableEntry changed = entry;
  if (release.is_catalogued) {
    return changed;
  }
  const std::string known = release_number(entry, entry.DataFileName.view());
  std::string prefix(entry.OutputPrefix.trimmed());
  const std::size_t place = prefix.find(known);
  if (place != std::string::npos) {
    const bool fits = prefix.size() - known.size() + release.number.size() <=
                      decltype(entry.OutputPrefix)::kWidth;
    prefix.replace(place, known.size(), fits ? release.number : "");
    changed.OutputPrefix = decltype(entry.OutputPrefix)::cut(prefix);
  }
  return changed;
}

}  // namespace veldmark::extract
