// How the fields of a row's cells are read from its lines.

#ifndef VELDMARK_EXTRACT_LINE_PLAN_H_
#define VELDMARK_EXTRACT_LINE_PLAN_H_

#include <cstdint>
#include <span>
#include <string_view>

#include "catalogue/row_plan.h"

namespace veldmark::extract {

// Returns the plan for the cells in `columns` (ascending), of which those in
// `data_columns` (ascending) have had data since the first month. Those in
// `late_columns` have them since a later one; they are read apart and not in the plan.
RowPlan plan_cells(std::span<const std::int32_t> columns,
                   std::span<const std::int32_t> data_columns,
                   std::span<const std::int32_t> late_columns);

// Reads a line that is as nearly all are: integers that are certain to fit into 16 bits
// in the fields of cells with data, the missing code in the others.
//
//   line, missing, values    as for read_by_plan
//
// Returns false when it needs a closer look; `values` is then unfinished.
bool read_usual_line(std::string_view line, const RowPlan& plan,
                     std::string_view missing, std::int16_t* values);

// Returns the value of a field that is known to be an integer of 16 bits.
std::int16_t value_of(std::string_view line, std::int32_t column);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_LINE_PLAN_H_
