#include "extract/release.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "catalogue/variable_name.h"
#include "companion/digits.h"
#include "util/without_folders.h"

namespace veldmark::extract {
namespace {

using Markers = std::array<std::string_view, 3>;
constexpr Markers kCruTs{"cru_ts_", "cru_ts", "cruts"};
constexpr Markers kDrought{"scpdsi.", "scpdsi_", "scpdsi"};

// The number at the start of `text`: two or more groups of one or two digits, with
// points or underscores between them, as in "4.09" and "3_24_01". A longer group is a
// year and ends the number. Empty if there is no such number.
std::string leading_number(std::string_view text) {
  constexpr std::ptrdiff_t kMaxDigits = 2;
  std::string number;
  std::size_t groups = 0;
  const char* place = text.begin();
  for (;;) {
    const char* const end = std::find_if_not(place, text.end(), companion::is_digit);
    if (end == place || end - place > kMaxDigits) {
      break;
    }
    number += (groups > 0 ? "." : "") + std::string(place, end);
    ++groups;
    if (end == text.end() || (*end != '.' && *end != '_')) {
      break;
    }
    place = end + 1;
  }
  return groups > 1 ? number : "";
}

// Returns the number after the name of the data set in a file's name; empty if there is
// none.
std::string release_number(const VariableEntry& entry, std::string_view file_name) {
  const std::string name = lower_case(without_folders(file_name));
  for (const std::string_view marker :
       entry.is_in_cru_ts_distribution ? kCruTs : kDrought) {
    const std::size_t place = name.find(marker);
    if (place != std::string::npos) {
      return leading_number(std::string_view(name).substr(place + marker.size()));
    }
  }
  return "";
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
