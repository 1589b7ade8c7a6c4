// Maps the five-character fields of a data line to grid columns.

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

// How to read a line, as a text such as "(   50x,   20i5)": 50x skips 50 characters,
// 20i5 reads 20 fields of five characters.
using RowFormat = TextField<65>;

// Returns the row format that reads the columns of `ranges`.
RowFormat row_format(const GridRanges& ranges);

// `count` consecutive fields, starting with field `first_field` (1 is the leftmost of a
// line), for as many consecutive columns, starting with `first_column` (GridX).
struct FieldGroup {
  std::int32_t first_field{};
  std::int32_t first_column{};
  std::int32_t count = 0;
};

// The fields of a line that a search reads, in the order in which it reads them.
struct FieldGroups {
  FieldGroup first;
  FieldGroup second;  // count 0 unless there are two column ranges
};

// Returns the groups of fields that row_format(ranges) reads.
//
// Column c gets field c, except in the second of two ranges that meet or overlap: its
// fields start right after those of the first.
//
// Kept on purpose: ReadRow.ShiftsTheSecondOfOverlappingRanges. In the second range
// column c gets field c + the overlap, and fields after the 720th read as 0.
//
// A range that starts at column 0, west of the grid, starts at field 0, which reads as
// 0. A row format cannot express that; the groups can.
FieldGroups field_groups(const GridRanges& ranges);

// Reads the fields in `groups` from `line` into `row_values`.
//
//   line         a data line, truncated to 3600 characters, without its newline
//   row_values   out: the values modulo 2^16, indexed by GridX. Where groups overlap,
//                the second overwrites the first. Other elements are not changed.
//
// Returns false if a field is not an integer, or if the line ends before or inside a
// field in 1..720; `row_values` is then incomplete.
bool read_row(std::string_view line, const FieldGroups& groups, RowValues& row_values);

// Returns the first field of `line` (1..720) that makes read_row return false; 0 if
// there is none.
std::int32_t first_bad_field(std::string_view line, const FieldGroups& groups);

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_ROW_FORMAT_H_
