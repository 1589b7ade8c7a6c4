#include "tersify/grid_shape.h"

#include <array>

namespace veldmark::tersify {
namespace {

constexpr std::array<const char*, kMonthsPerYear> kMonthNames{
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};

}  // namespace

std::string month_name(std::int32_t month) {
  return kMonthNames.at(static_cast<std::size_t>(month - 1));
}

std::string place_of_line(std::int64_t line, const GridShape& shape) {
  const std::int64_t rows_before = line - 1;
  const std::int64_t months_before = rows_before / shape.rows;
  const std::int64_t year = shape.first_year + months_before / kMonthsPerYear;
  const auto month = static_cast<std::int32_t>(months_before % kMonthsPerYear + 1);
  return "year " + std::to_string(year) + ", " + month_name(month) + ", row " +
         std::to_string(rows_before % shape.rows + 1);
}

std::string name_of_line(std::int64_t line, const GridShape& shape) {
  return "line " + std::to_string(line) + " (" + place_of_line(line, shape) + ")";
}

}  // namespace veldmark::tersify
