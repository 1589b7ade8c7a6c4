// A plan for reading the lines of a row once its cells with data are known.
//
// Only the fields of those cells are converted. The other requested fields, most of
// them sea, are compared with the missing code and checked only if they differ, so that
// a bad field is still found.

#ifndef VELDMARK_CATALOGUE_ROW_PLAN_H_
#define VELDMARK_CATALOGUE_ROW_PLAN_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/row_format.h"

namespace veldmark {

// Consecutive fields of a line whose cells either all have data or all have none.
struct FieldRun {
  std::int32_t first_field;  // counted from 1
  std::int32_t count;
  bool has_data;
};

// The requested fields of a line, in their order, which is also that of the columns.
struct RowPlan {
  std::vector<FieldRun> runs;
  std::size_t blank_fields = 0;  // of cells with data, after the end of the line
};

// Returns the plan for a row whose cells in `data_columns` (ascending) have data.
RowPlan plan_row(const FieldGroups& groups, std::span<const std::int32_t> data_columns);

// Returns a line with the missing code in each of its 720 fields. Requires that the
// code fits into five characters.
std::string missing_line(std::int32_t MissingCode);

// Reads a line by its plan.
//
//   line      720 fields without the newline; one more character must be readable
//   missing   the missing_line of the data set
//   cells     out: the values of the cells with data, in the order of their columns
//
// Returns false if a requested field is not an integer, or if the line contains a
// newline; `cells` is then incomplete.
bool read_by_plan(std::string_view line, const RowPlan& plan, std::string_view missing,
                  std::int16_t* cells);

// Returns whether `text` contains a newline.
bool contains_newline(std::string_view text);

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_ROW_PLAN_H_
