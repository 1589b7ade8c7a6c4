#include "tersify/release_years.h"

#include <cstddef>

#include "companion/digits.h"

namespace veldmark::tersify {
namespace {

constexpr std::string_view kYearsInName = ".dddd.dddd.";
constexpr std::size_t kFirstAt = 1;
constexpr std::size_t kLastAt = 6;
constexpr std::size_t kYearDigits = 4;

std::int32_t year_at(std::string_view text, std::size_t place) {
  return std::stoi(std::string(text.substr(place, kYearDigits)));
}

std::string number_of_years(std::int32_t count) {
  return std::to_string(count) + (count == 1 ? " year" : " years");
}

}  // namespace

std::optional<Years> years_in_name(std::string_view name) {
  name.remove_prefix(name.rfind('/') + 1);  // npos + 1 is 0
  for (; name.size() >= kYearsInName.size(); name.remove_prefix(1)) {
    const std::string_view text = name.substr(0, kYearsInName.size());
    if (companion::has_shape(text, kYearsInName)) {
      const Years years{year_at(text, kFirstAt), year_at(text, kLastAt)};
      if (years.first <= years.last) {
        return years;
      }
    }
  }
  return std::nullopt;
}

GridShape shape_by_name(std::string_view name, GridShape shape) {
  if (const std::optional<Years> years = years_in_name(name)) {
    shape.first_year = years->first;
    shape.years = years->count();
    shape.years_are_named = true;
  }
  return shape;
}

std::optional<std::int32_t> whole_years(std::int64_t lines, const GridShape& shape) {
  if (lines <= 0 || lines % shape.lines_per_year() != 0) {
    return std::nullopt;
  }
  return static_cast<std::int32_t>(lines / shape.lines_per_year());
}

std::string years_text(std::int32_t first, std::int32_t count) {
  const std::string text = number_of_years(count) + ", " + std::to_string(first);
  return count == 1 ? text : text + " to " + std::to_string(first + count - 1);
}

std::optional<std::string> other_years_warning(std::string_view name,
                                               std::int32_t count) {
  const std::optional<Years> years = years_in_name(name);
  if (!years || years->count() == count) {
    return std::nullopt;
  }
  return "its name says " + std::to_string(years->first) + " to " +
         std::to_string(years->last) + ", and it holds " + number_of_years(count);
}

}  // namespace veldmark::tersify
