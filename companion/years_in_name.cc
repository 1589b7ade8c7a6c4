#include "companion/years_in_name.h"

#include <cstddef>

#include "companion/digits.h"
#include "util/without_folders.h"

namespace veldmark::companion {
namespace {

constexpr std::string_view kYearsInName = ".dddd.dddd.";
constexpr std::size_t kFirstAt = 1;
constexpr std::size_t kLastAt = 6;
constexpr std::size_t kYearDigits = 4;

std::int32_t year_at(std::string_view text, std::size_t place) {
  return number_of(text.substr(place, kYearDigits));
}

}  // namespace

std::optional<Years> years_in_name(std::string_view name) {
  name = without_folders(name);
  for (; name.size() >= kYearsInName.size(); name.remove_prefix(1)) {
    const std::string_view text = name.substr(0, kYearsInName.size());
    if (has_shape(text, kYearsInName)) {
      const Years years{year_at(text, kFirstAt), year_at(text, kLastAt)};
      if (years.first <= years.last) {
        return years;
      }
    }
  }
  return std::nullopt;
}

}  // namespace veldmark::companion
