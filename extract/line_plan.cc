#include "extract/line_plan.h"

#include <algorithm>
#include <cstddef>
#include <optional>

#include "grid/grid_layout.h"
#include "util/fixed_field.h"

namespace veldmark::extract {
namespace {

constexpr std::size_t byte_of(std::int32_t column) {
  return static_cast<std::size_t>(column - 1) * kFieldWidth;
}

void add_column(RowPlan& plan, std::int32_t column, bool has_data) {
  if (!plan.runs.empty()) {
    FieldRun& last = plan.runs.back();
    if (last.has_data == has_data && last.first_field + last.count == column) {
      ++last.count;
      return;
    }
  }
  plan.runs.push_back({column, 1, has_data});
}

}  // namespace

RowPlan plan_cells(std::span<const std::int32_t> columns,
                   std::span<const std::int32_t> data_columns,
                   std::span<const std::int32_t> late_columns) {
  RowPlan plan;
  for (const std::int32_t column : columns) {
    const bool is_late = std::find(late_columns.begin(), late_columns.end(), column) !=
                         late_columns.end();
    if (!is_late) {
      add_column(plan, column,
                 std::binary_search(data_columns.begin(), data_columns.end(), column));
    }
  }
  return plan;
}

bool may_be_too_large(std::string_view line, const FieldRun& run) {
  constexpr unsigned kDigits = 7;  // from '3' to '9'
  bool found = false;
  const char* field = line.data() + byte_of(run.first_field);
  for (std::int32_t i = 0; i < run.count; ++i) {
    found |= static_cast<unsigned>(*field - '3') < kDigits;
    field += kFieldWidth;
  }
  return found;
}

bool differs(std::string_view line, const FieldRun& run, std::string_view missing) {
  const std::size_t size = static_cast<std::size_t>(run.count) * kFieldWidth;
  return line.substr(byte_of(run.first_field), size) != missing.substr(0, size);
}

std::int16_t value_of(std::string_view line, std::int32_t column) {
  const std::optional<std::int32_t> value =
      parse_integer(line.substr(byte_of(column), kFieldWidth));
  return static_cast<std::int16_t>(value.value_or(0));
}

}  // namespace veldmark::extract
