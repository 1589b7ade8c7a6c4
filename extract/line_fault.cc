#include "extract/line_fault.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include "catalogue/field_conversion.h"
#include "util/fixed_field.h"

namespace veldmark::extract {
namespace {

// The field in quotes, with a question mark for what could upset a terminal.
std::string quoted_field(std::string_view field) {
  std::string shown(field);
  std::replace_if(
      shown.begin(), shown.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
  return "'" + shown + "'";
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
    const std::string where = "characters " + std::to_string(begin + 1) + "-" +
                              std::to_string(begin + kFieldWidth) + " (column " +
                              std::to_string(column) + "): " + quoted_field(field);
    if (!value) {
      return where + " is no integer";
    }
    if (*value > std::numeric_limits<std::int16_t>::max()) {
      return where + " is too large for a value";
    }
  }
  return std::nullopt;
}

}  // namespace veldmark::extract
