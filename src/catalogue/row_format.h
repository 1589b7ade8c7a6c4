// The layout of a data line: which of its five-character fields go to which columns.

#ifndef VELDMARK_CATALOGUE_ROW_FORMAT_H_
#define VELDMARK_CATALOGUE_ROW_FORMAT_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "catalogue/grid_values.h"
#include "grid/grid_layout.h"
#include "selection/grid_geometry.h"
#include "util/text_field.h"

namespace veldmark {

// How a line is read, as a text such as "(   50x,   20i5)": a number and x skip so many
// characters, a number and i5 read so many fields of five characters.
using RowFormat = TextField<65>;

// Returns the row format of the columns of `ranges`.
RowFormat row_format(const GridRanges& ranges);

// `count` neighbouring fields, from field `first_field` (1 is the leftmost of a line),
// that go to as many neighbouring columns, from `first_column` (GridX).
struct FieldGroup {
  std::int32_t first_field = 1;
  std::int32_t first_column = 1;
  std::int32_t count = 0;
};

// The fields of a line that a search reads, in their order.
struct FieldGroups {
  FieldGroup first;
  FieldGroup second;  // count 0 unless the box is cut in two pieces
};

// Returns the groups of fields that row_format(ranges) names.
//
// Column c is field c, but for two pieces that meet or overlap: their second group of
// fields is read straight after the first.
// Kept on purpose: ReadRow.ShiftsTheSecondOfOverlappingPieces. Column c gets field c +
// the overlap, and fields after the 720th read as 0.
// A box that starts at column 0, which is west of the grid, starts at field 0, which
// reads as 0. A row format can't say that; the groups do.
FieldGroups field_groups(const GridRanges& ranges);

// Reads the fields of `line` that `groups` names into `row_values`.
//
//   line         at most the first 3600 characters of a data line, without line end
//   row_values   out: index c gets column c, each value modulo 2^16; where groups
//                overlap the second holds. Others stay as they are.
// Returns false when a field is no integer, or the line ends before or inside one of
//            the 720 fields it must hold; row_values is then unfinished.
bool read_row(std::string_view line, const FieldGroups& groups, RowValues& row_values);

// Returns the first field of `line` (1..720) for which read_row returns false; 0 where
// it returns true.
std::int32_t first_bad_field(std::string_view line, const FieldGroups& groups);

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_ROW_FORMAT_H_
