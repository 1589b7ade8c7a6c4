// A data line once more: which of its fields goes to which column, and what they say.

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

// A field of a line and the column that it goes to, both counted from 1.
struct FieldPlace {
  std::int32_t field;
  std::int32_t column;
};

// Returns the fields of a search in the order in which they are read. Two pieces with a
// gap between them: field c goes to column c. Pieces that meet or overlap: the second
// one's fields follow straight after the first one's.
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

// What a line says of a search.
struct Row {
  // The first field that is no integer, or for which the line is too short.
  std::optional<std::int32_t> bad_field;
  // By column, modulo 2^16; nothing for columns that are not asked for.
  std::vector<std::optional<std::int16_t>> values =
      std::vector<std::optional<std::int16_t>>(722);

  [[nodiscard]] const std::optional<std::int16_t>& value(std::int32_t column) const {
    return values.at(static_cast<std::size_t>(column));
  }
};

// Reads a line; fields outside the 720 of a line are 0.
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

// Returns the columns on the grid that are asked for, ascending.
inline std::vector<std::int32_t> columns(const GridRanges& ranges) {
  std::vector<bool> wanted(722);
  for (const FieldPlace& place : field_places(ranges)) {
    wanted.at(static_cast<std::size_t>(place.column)) = true;
  }
  std::vector<std::int32_t> found;
  for (std::int32_t column = 1; column <= 720; ++column) {
    if (wanted[static_cast<std::size_t>(column)]) {
      found.push_back(column);
    }
  }
  return found;
}

}  // namespace veldmark::plain

#endif  // VELDMARK_TESTS_SUPPORT_PLAIN_ROWS_H_
