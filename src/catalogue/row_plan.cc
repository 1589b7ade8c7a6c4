#include "catalogue/row_plan.h"

#include <algorithm>

#include "catalogue/field_conversion.h"
#include "util/fixed_field.h"

namespace veldmark {
namespace {

// Adds those fields of a group to a plan that exist on the line.
//
//   end_column   the first column that gets its values from another group
void add_group(const FieldGroup& group, std::int32_t end_column,
               std::span<const std::int32_t> data_columns, RowPlan& plan) {
  for (std::int32_t i = 0; i < group.count; ++i) {
    const std::int32_t field = group.first_field + i;
    const std::int32_t GridX = group.first_column + i;
    const bool has_data =
        GridX < end_column &&
        std::binary_search(data_columns.begin(), data_columns.end(), GridX);
    if (field < 1) {
      continue;
    }
    if (field > kGridColumns) {
      plan.blank_fields += has_data ? 1 : 0;
    } else if (!plan.runs.empty() && plan.runs.back().has_data == has_data &&
               plan.runs.back().first_field + plan.runs.back().count == field) {
      ++plan.runs.back().count;
    } else {
      plan.runs.push_back({field, 1, has_data});
    }
  }
}

}  // namespace

RowPlan plan_row(const FieldGroups& groups,
                 std::span<const std::int32_t> data_columns) {
  RowPlan plan;
  const bool two_groups = groups.second.count > 0;
  const std::int32_t end_of_first =
      two_groups ? groups.second.first_column : kGridColumns + 1;
  add_group(groups.first, end_of_first, data_columns, plan);
  add_group(groups.second, kGridColumns + 1, data_columns, plan);
  return plan;
}

std::string missing_line(std::int32_t MissingCode) {
  const std::string field = fixed_integer(MissingCode, static_cast<int>(kFieldWidth));
  std::string line;
  while (line.size() < kLineLength) {
    line += field;
  }
  return line;
}

bool read_by_plan(std::string_view line, const RowPlan& plan, std::string_view missing,
                  std::int16_t* cells) {
  if (contains_newline(line)) {
    return false;
  }
  for (const FieldRun& run : plan.runs) {
    const std::string_view fields =
        line.substr(static_cast<std::size_t>(run.first_field - 1) * kFieldWidth,
                    static_cast<std::size_t>(run.count) * kFieldWidth);
    if (!run.has_data) {
      if (!are_integers(fields, missing)) {
        return false;
      }
    } else {
      if (!convert_fields(fields, cells)) {
        return false;
      }
      cells += run.count;
    }
  }
  std::fill_n(cells, plan.blank_fields, std::int16_t{0});
  return true;
}

bool contains_newline(std::string_view text) {
  return text.find('\n') != std::string_view::npos;
}

}  // namespace veldmark
