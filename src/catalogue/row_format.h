// The layout of a data line: which of its five-character fields go to which columns.

#ifndef VELDMARK_CATALOGUE_ROW_FORMAT_H_
#define VELDMARK_CATALOGUE_ROW_FORMAT_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "catalogue/grid_values.h"
#include "grid/grid_layout.h"
#include "selection/grid_geometry.h"

namespace veldmark {

// `count` neighbouring fields, from field `first_field` (1 is the leftmost of a line),
// that go to as many neighbouring columns, from `first_column`.
struct FieldGroup {
  std::int32_t first_field;
  std::int32_t first_column;
  std::int32_t count;
};

// The fields of a line that a search reads, in their order.
struct RowFormat {
  FieldGroup first{};
  FieldGroup second{};  // count 0 unless the box is cut in two pieces
};

// Lays out the columns of `ranges`. Column c is field c, but for two pieces that meet
// or overlap: their second group of fields is read straight after the first. Kept on
// purpose: with overlapping pieces the second group's values are shifted (column c gets
// field c + the overlap), and fields after the 720th read as 0.
RowFormat row_format(const GridRanges& ranges);

// Reads the fields of `line` that `format` names into `row_values`.
//
//   line         at most the first 3600 characters of a data line, without line end
//   row_values   out: place c gets column c, each value modulo 2^16; where groups
//                overlap the second holds. Other places keep what they hold.
// Result     false when a field is no integer, or the line ends before or inside one of
//            the 720 fields it must hold; row_values is then unfinished.
bool read_row(std::string_view line, const RowFormat& format, RowValues& row_values);

// Returns the first field of `line` (1..720) for which read_row returns false; 0 where
// it returns true.
std::int32_t first_bad_field(std::string_view line, const RowFormat& format);

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_ROW_FORMAT_H_
