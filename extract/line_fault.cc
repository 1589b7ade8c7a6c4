#include "extract/line_fault.h"

#include <cstddef>
#include <limits>

#include "catalogue/field_conversion.h"
#include "util/fixed_field.h"
#include "util/in_quotes.h"

namespace veldmark::extract {
namespace {

std::string at_column(std::string_view field, std::int32_t column) {
  const std::size_t begin = static_cast<std::size_t>(column - 1) * kFieldWidth;
  return "characters " + std::to_string(begin + 1) + "-" +
         std::to_string(begin + kFieldWidth) + " (column " + std::to_string(column) +
         "): " + in_quotes(field);
}

}  // namespace

std::optional<std::string> find_line_fault(std::string_view line,
                                           std::span<const std::int32_t> columns) {
  if (line.find('\n') != std::string_view::npos) {
    return "it ends early, after " + std::to_string(line.find('\n')) + " characters";
  }
  for (const std::int32_t column : columns) {
    const std::size_t begin = static_cast<std::size_t>(column - 1) * kFieldWidth;
    const std::string_view field = line.substr(begin, kFieldWidth);
    const std::optional<std::int32_t> value = parse_integer(field);
    if (!value) {
      return at_column(field, column) + " is no integer";
    }
    if (*value > std::numeric_limits<std::int16_t>::max()) {
      return at_column(field, column) + " is too large for a value";
    }
  }
  return std::nullopt;
}

}  // namespace veldmark::extract
