// What a row's line is read for once it is known which of its cells have data.
//
// Only the fields of those cells need converting. All other requested fields are
// compared with the missing code and looked at where they differ, so that a bad field
// is still found. Of the globe three fields of four are sea.

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

// Neighbouring fields of a line of which all belong to cells with data, or none.
struct FieldRun {
  std::int32_t first_field;  // counted from 1
  std::int32_t count;
  bool has_data;
};

// The requested fields of a line, in their order, which is that of the columns.
struct RowPlan {
  std::vector<FieldRun> runs;
  std::size_t blank_fields = 0;  // cells with data whose fields lie beyond the line
};

// Plans the reading of a row whose cells in `data_columns` (ascending) have data.
RowPlan plan_row(const FieldGroups& groups, std::span<const std::int32_t> data_columns);

// A line of 720 fields that hold the missing code, which has up to five characters.
std::string missing_line(std::int32_t MissingCode);

// Reads a line by its plan.
//
//   line           720 fields without line end; one more character must be readable
//   missing        the missing_line of the data set
//   cells          out: the values of the cells with data, in the order of columns
//
// Returns false when a requested field is no integer, or a line end stands inside the
//            line; `cells` is then unfinished.
bool read_by_plan(std::string_view line, const RowPlan& plan, std::string_view missing,
                  std::int16_t* cells);

// Is there a line end inside `text`?
bool contains_newline(std::string_view text);

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_ROW_PLAN_H_
