#include "tersify/release_years.h"

namespace veldmark::tersify {
namespace {

std::string number_of_years(std::int32_t count) {
  return std::to_string(count) + (count == 1 ? " year" : " years");
}

}  // namespace

GridShape shape_by_name(std::string_view name, GridShape shape) {
  if (const std::optional<Years> years = years_in_name(name)) {
    shape.first_year = years->first;
    shape.years = years->count();
    shape.years_are_named = true;
  }
  return shape;
}

std::optional<std::int32_t> whole_years(std::int64_t lines, const GridShape& shape) {
  if (lines == 0 || lines % shape.lines_per_year() != 0) {
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
