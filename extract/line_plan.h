// Reads the fields of a row's cells from its lines. A plan tells which fields of a
// row hold values. It is kept from month to month, and made again only if a cell turns
// out to have data from a later month on.

#ifndef VELDMARK_EXTRACT_LINE_PLAN_H_
#define VELDMARK_EXTRACT_LINE_PLAN_H_

#include <cstdint>
#include <span>
#include <string_view>

#include "catalogue/row_plan.h"

namespace veldmark::extract {

// Returns the plan for the cells in `columns` (ascending). Those in `data_columns`
// (ascending) have data from the first month on. Those in `late_start_columns` have
// data from a later month on; they are read separately and left out of the plan.
RowPlan plan_cells(std::span<const std::int32_t> columns,
                   std::span<const std::int32_t> data_columns,
                   std::span<const std::int32_t> late_start_columns);

// The fast path, which nearly all lines take. Reads a line that has integers in the
// fields of cells with data, all certain to fit into 16 bits, and the missing code in
// the other fields of the plan.
//
//   line, missing, values    as for read_by_plan
//
// Returns false for any other line, valid or not; `values` is then incomplete.
bool try_fast_read(std::string_view line, const RowPlan& plan, std::string_view missing,
                   std::int16_t* values);

// Returns the value of a column's field. Requires that it is a 16-bit integer.
std::int16_t value_of(std::string_view line, std::int32_t column);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_LINE_PLAN_H_
