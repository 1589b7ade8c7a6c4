#include "catalogue/variable_name.h"

#include <algorithm>
#include <cctype>

#include "util/without_folders.h"

namespace veldmark {

std::string lower_case(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return lower;
}

std::string short_names() {
  std::string names;
  for (const VariableEntry& entry : VariableCatalogue) {
    names += (names.empty() ? "" : " ") + std::string(entry.short_name);
  }
  return names;
}

const VariableEntry* find_by_short_name(std::string_view short_name) {
  const auto* found =
      std::find_if(VariableCatalogue.begin(), VariableCatalogue.end(),
                   [requested = lower_case(short_name)](const VariableEntry& entry) {
                     return lower_case(entry.short_name) == requested;
                   });
  return found == VariableCatalogue.end() ? nullptr : found;
}

const VariableEntry* find_by_file_name(std::string_view file_name) {
  const std::string name = "." + lower_case(without_folders(file_name));
  for (const VariableEntry& entry : VariableCatalogue) {
    if (name.find("." + lower_case(entry.short_name) + ".") != std::string::npos) {
      return &entry;
    }
  }
  return nullptr;
}

std::int32_t decimals_of(const VariableEntry& entry) {
  constexpr std::int32_t kTen = 10;
  std::int32_t decimals = 0;
  for (std::int32_t power = 1; power < entry.stored_per_unit; power *= kTen) {
    ++decimals;
  }
  return decimals;
}

}  // namespace veldmark
