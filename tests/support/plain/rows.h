// A plain definition of a data line: the columns and values of its fields.

#ifndef VELDMARK_TESTS_SUPPORT_PLAIN_ROWS_H_
#define VELDMARK_TESTS_SUPPORT_PLAIN_ROWS_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "selection/grid_geometry.h"
#include "support/plain/fields.h"

namespace veldmark::plain {

// A field of a line and its column, both counted from 1.
struct FieldPlace {
  std::int32_t field;
  std::int32_t column;
};

// Returns the fields of a search in the order in which they are read. If there is a gap
// between two column ranges, field c goes to column c. If they meet or overlap, the
// fields of the second follow right after those of the first.
inline std::vector<FieldPlace> field_places(const GridRanges& ranges) {
  std::vector<FieldPlace> places;
  for (std::int32_t column = ranges.FirstCol; column <= ranges.LastCol; ++column) {
    places.push_back({column, column});
  }
  if (!ranges.CrossesDateLine) {
    return places;
  }
  const auto first_count = static_cast<std::int32_t>(places.size());
  const std::int32_t second_count = ranges.EastLastCol - ranges.EastFirstCol + 1;
  const bool gap = first_count + second_count < 720;
  for (std::int32_t i = 0; i < second_count; ++i) {
    const std::int32_t column = ranges.EastFirstCol + i;
    places.push_back({gap ? column : first_count + 1 + i, column});
  }
  return places;
}

// What a search reads from a line.
struct Row {
  // The first field that is not an integer or is missing because the line is too short.
  std::optional<std::int32_t> bad_field;
  // By column, modulo 2^16; nullopt for columns that are not requested.
  std::vector<std::optional<std::int16_t>> values =
      std::vector<std::optional<std::int16_t>>(722);

  [[nodiscard]] const std::optional<std::int16_t>& value(std::int32_t column) const {
    return values.at(static_cast<std::size_t>(column));
  }
};

// Reads a line. Fields outside 1..720 are 0.
inline Row read(std::string_view line, const GridRanges& ranges) {
  Row row;
  for (const FieldPlace& place : field_places(ranges)) {
    std::optional<std::int16_t> value = std::int16_t{0};
    if (1 <= place.field && place.field <= 720) {
      const std::size_t end = static_cast<std::size_t>(place.field) * 5;
      value = line.size() < end ? std::nullopt : kept_of_field(line.substr(end - 5, 5));
    }
    if (!value) {
      row.bad_field = place.field;
      return row;
    }
    row.values.at(static_cast<std::size_t>(place.column)) = value;
  }
  return row;
}

// Returns the requested columns that lie on the grid, ascending.
inline std::vector<std::int32_t> columns(const GridRanges& ranges) {
  std::vector<bool> requested(722);
  for (const FieldPlace& place : field_places(ranges)) {
    requested.at(static_cast<std::size_t>(place.column)) = true;
  }
  std::vector<std::int32_t> found;
  for (std::int32_t column = 1; column <= 720; ++column) {
    if (requested[static_cast<std::size_t>(column)]) {
      found.push_back(column);
    }
  }
  return found;
}

}  // namespace veldmark::plain

#endif  // VELDMARK_TESTS_SUPPORT_PLAIN_ROWS_H_
