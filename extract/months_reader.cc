#include "extract/months_reader.h"

#include <utility>

#include "extract/line_fault.h"
#include "extract/line_plan.h"

namespace veldmark::extract {

MonthsReader::MonthsReader(const InputFile& input, const CellSet& cells,
                           const Years& years, const Progress& progress)
    : cells_(cells),
      lines_(input, cells.rows(), years, progress),
      MissingCode_(static_cast<std::int16_t>(input.entry.MissingCode)),
      missing_(missing_line(input.entry.MissingCode)) {}

BlockLayout MonthsReader::find_cells() {
  BlockLayout layout;
  std::vector<std::int16_t> values;
  lines_.for_each(0, [&](std::size_t index, std::string_view line) {
    const std::span<const std::int32_t> columns = cells_.columns(index);
    values.resize(columns.size());
    read_fields(0, index, line, plan_cells(columns, columns, {}), values.data());
    layout.rows.push_back(cells_.rows()[index]);
    layout.begin.push_back(layout.columns.size());
    for (std::size_t i = 0; i < columns.size(); ++i) {
      if (values[i] != MissingCode_) {
        layout.columns.push_back(columns[i]);
      }
    }
  });
  layout.begin.push_back(layout.columns.size());
  return layout;
}

LateStarts MonthsReader::read(const BlockLayout& layout, std::size_t first,
                              std::size_t end, std::int16_t* values) {
  late_start_columns_.assign(layout.rows.size(), {});
  plans_.clear();
  for (std::size_t index = 0; index < layout.rows.size(); ++index) {
    plans_.push_back(plan_of(layout, index));
  }
  for (std::size_t month = first; month < end; ++month) {
    lines_.for_each(month, [&](std::size_t index, std::string_view line) {
      read_line(layout, month, index, line, values);
    });
  }
  return std::move(late_starts_);
}

RowPlan MonthsReader::plan_of(const BlockLayout& layout, std::size_t index) const {
  return plan_cells(cells_.columns(index), layout.columns_of_row(index),
                    late_start_columns_[index]);
}

void MonthsReader::read_line(const BlockLayout& layout, std::size_t month,
                             std::size_t index, std::string_view line,
                             std::int16_t* values) {
  std::int16_t* month_of_row = values + layout.begin[index] * layout.month_count +
                               month * layout.columns_of_row(index).size();
  if (!read_fields(month, index, line, plans_[index], month_of_row)) {
    find_late_starts(layout, index, line);
  }
  read_late_starts(layout, month, index, line);
}

// Reads the fields of a plan. Returns false if a cell may have its first data in this
// line.
bool MonthsReader::read_fields(std::size_t month, std::size_t index,
                               std::string_view line, const RowPlan& plan,
                               std::int16_t* values) const {
  if (try_fast_read(line, plan, missing_, values)) {
    return true;
  }
  require_valid_fields(month, index, line, cells_.columns(index));
  if (!read_by_plan(line, plan, missing_, values)) {
    lines_.fail(month, index, "it can't be read; tersify --check tells more");
  }
  return false;
}

// Adds the cells whose first data are in this line.
void MonthsReader::find_late_starts(const BlockLayout& layout, std::size_t index,
                                    std::string_view line) {
  for (const FieldRun& run : plans_[index].runs) {
    for (std::int32_t i = 0; !run.has_data && i < run.count; ++i) {
      if (value_of(line, run.first_field + i) != MissingCode_) {
        late_start_columns_[index].push_back(run.first_field + i);
      }
    }
  }
  plans_[index] = plan_of(layout, index);
}

void MonthsReader::read_late_starts(const BlockLayout& layout, std::size_t month,
                                    std::size_t index, std::string_view line) {
  const std::vector<std::int32_t>& columns = late_start_columns_[index];
  if (columns.empty()) {
    return;
  }
  require_valid_fields(month, index, line, columns);
  for (const std::int32_t column : columns) {
    std::vector<std::int16_t>& series =
        late_starts_[{.GridY = cells_.rows()[index], .GridX = column}];
    series.resize(layout.month_count, MissingCode_);
    series[month] = value_of(line, column);
  }
}

void MonthsReader::require_valid_fields(std::size_t month, std::size_t index,
                                        std::string_view line,
                                        std::span<const std::int32_t> columns) const {
  if (const auto fault = find_line_fault(line, columns)) {
    lines_.fail(month, index, *fault);
  }
}

}  // namespace veldmark::extract
