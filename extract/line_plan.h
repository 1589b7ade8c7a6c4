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

// Could a field of `run` hold a value beyond 16 bits? Those have five digits, the first
// of them a 3 or more; blanks and signs before the first digit make the number smaller.
bool may_be_too_large(std::string_view line, const FieldRun& run);

// Are the fields of `run` anything but the missing code?
bool differs(std::string_view line, const FieldRun& run, std::string_view missing);

// Returns the value of a field that is known to be an integer of 16 bits.
std::int16_t value_of(std::string_view line, std::int32_t column);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_LINE_PLAN_H_
