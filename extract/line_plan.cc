#include "extract/line_plan.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "catalogue/field_conversion.h"
#include "grid/grid_layout.h"
#include "util/fixed_field.h"

namespace veldmark::extract {
namespace {

constexpr std::size_t byte_of(std::int32_t column) {
  return static_cast<std::size_t>(column - 1) * kFieldWidth;
}

// 0xFF for the first character of each field, 0 for the others.
constexpr std::array<unsigned char, kLineLength> kFirstCharacters = [] {
  std::array<unsigned char, kLineLength> marks{};
  for (std::size_t i = 0; i < kLineLength; i += kFieldWidth) {
    marks[i] = 0xFF;
  }
  return marks;
}();

// Returns whether a field may hold a value that does not fit into 16 bits: only five
// digits of which the first is 3 or more can be that large. The loop looks at every
// character, not only at the first of each field, so that the compiler vectorises it.
bool may_be_too_large(std::string_view fields) {
  unsigned char found = 0;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const unsigned char is_large = fields[i] >= '3' ? 0xFF : 0;
    found = static_cast<unsigned char>(found | (is_large & kFirstCharacters[i]));
  }
  return found != 0;
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
                   std::span<const std::int32_t> late_start_columns) {
  RowPlan plan;
  for (const std::int32_t column : columns) {
    const bool is_late = std::find(late_start_columns.begin(), late_start_columns.end(),
                                   column) != late_start_columns.end();
    if (!is_late) {
      add_column(plan, column,
                 std::binary_search(data_columns.begin(), data_columns.end(), column));
    }
  }
  return plan;
}

bool try_fast_read(std::string_view line, const RowPlan& plan, std::string_view missing,
                   std::int16_t* values) {
  if (contains_newline(line)) {
    return false;
  }
  for (const FieldRun& run : plan.runs) {
    const std::size_t begin = byte_of(run.first_field);
    const std::size_t size = static_cast<std::size_t>(run.count) * kFieldWidth;
    const std::string_view fields = line.substr(begin, size);
    if (!run.has_data && !missing.starts_with(fields)) {
      return false;
    }
    if (run.has_data) {
      if (may_be_too_large(fields) || !convert_fields(fields, values)) {
        return false;
      }
      values += run.count;
    }
  }
  return true;
}

std::int16_t value_of(std::string_view line, std::int32_t column) {
  return static_cast<std::int16_t>(
      parse_integer(line.substr(byte_of(column), kFieldWidth)).value());
}

}  // namespace veldmark::extract
