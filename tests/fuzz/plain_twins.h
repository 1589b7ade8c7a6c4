// Plain second definitions that more than one fuzz target compares the program with.

#ifndef VELDMARK_TESTS_FUZZ_PLAIN_TWINS_H_
#define VELDMARK_TESTS_FUZZ_PLAIN_TWINS_H_

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "selection/grid_geometry.h"

namespace veldmark::fuzz {

inline bool only_digits(std::string_view text) {
  return text.find_first_not_of("0123456789") == std::string_view::npos;
}

// An integer as a person reads it: strike out the blanks and tabs, then look.
inline std::optional<std::int32_t> plain_integer(std::string_view field) {
  std::string rest;
  for (const char character : field) {
    if (character != ' ' && character != '\t') rest += character;
  }
  if (rest.empty()) return 0;
  const bool negative = rest.front() == '-';
  std::string digits = rest.substr(negative || rest.front() == '+' ? 1 : 0);
  if (digits.empty() || !only_digits(digits)) return std::nullopt;
  digits.erase(0, digits.find_first_not_of('0'));
  if (digits.size() > 10) return std::nullopt;
  const std::int64_t magnitude = digits.empty() ? 0 : std::stoll(digits);
  const std::int64_t value = negative ? -magnitude : magnitude;
  if (value < std::numeric_limits<std::int32_t>::min() ||
      value > std::numeric_limits<std::int32_t>::max()) {
    return std::nullopt;
  }
  return static_cast<std::int32_t>(value);
}

// Which field of a line goes to which column, in the order of the line. Two pieces with
// a gap between them: field c goes to column c. Pieces that meet or overlap: the second
// one's fields follow straight after the first one's.
struct FieldPlace {
  std::int32_t field;
  std::int32_t column;
};

inline std::vector<FieldPlace> plain_row_format(const GridRanges& ranges) {
  std::vector<FieldPlace> places;
  for (std::int32_t column = ranges.FirstCol; column <= ranges.LastCol; ++column) {
    places.push_back({column, column});
  }
  if (!ranges.CrossesDateLine) return places;
  const auto first_count = static_cast<std::int32_t>(places.size());
  const std::int32_t second_count = ranges.EastLastCol - ranges.EastFirstCol + 1;
  const bool gap = first_count + second_count < kGridColumns;
  for (std::int32_t i = 0; i < second_count; ++i) {
    const std::int32_t column = ranges.EastFirstCol + i;
    places.push_back({gap ? column : first_count + 1 + i, column});
  }
  return places;
}

// The values of a line by column, modulo 2^16; place 0 is west of the grid. Fields
// outside the 720 of a line are 0. Nothing when a field is no integer, or the line too
// short for one.
inline std::optional<std::vector<std::int16_t>> plain_row(std::string_view line,
                                                          const GridRanges& ranges) {
  std::vector<std::int16_t> values(kGridColumns + 1);
  for (const FieldPlace& place : plain_row_format(ranges)) {
    std::int32_t value = 0;
    if (1 <= place.field && place.field <= kGridColumns) {
      const std::size_t end = static_cast<std::size_t>(place.field) * 5;
      if (line.size() < end) return std::nullopt;
      const auto field = plain_integer(line.substr(end - 5, 5));
      if (!field) return std::nullopt;
      value = *field;
    }
    values.at(static_cast<std::size_t>(place.column)) =
        static_cast<std::int16_t>(value);
  }
  return values;
}

// The columns on the grid that `ranges` name, ascending.
inline std::vector<std::int32_t> plain_columns(const GridRanges& ranges) {
  std::vector<bool> wanted(kGridColumns + 1);
  for (const FieldPlace& place : plain_row_format(ranges)) {
    wanted.at(static_cast<std::size_t>(place.column)) = true;
  }
  std::vector<std::int32_t> columns;
  for (std::int32_t column = 1; column <= kGridColumns; ++column) {
    if (wanted[static_cast<std::size_t>(column)]) columns.push_back(column);
  }
  return columns;
}

}  // namespace veldmark::fuzz

#endif  // VELDMARK_TESTS_FUZZ_PLAIN_TWINS_H_
