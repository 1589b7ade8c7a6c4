#include "catalogue/row_format.h"

#include <optional>

#include "util/fixed_field.h"

namespace veldmark {
namespace {

// Reads one field. Fields outside the 720 of a line read as blank, which is 0.
std::optional<std::int32_t> read_field(std::string_view line, std::int32_t field) {
  if (field < 1 || field > kGridColumns) {
    return 0;
  }
  const std::size_t begin = static_cast<std::size_t>(field - 1) * kFieldWidth;
  if (line.size() < begin + kFieldWidth) {
    return std::nullopt;
  }
  return parse_integer(line.substr(begin, kFieldWidth));
}

bool read_group(std::string_view line, const FieldGroup& group, RowValues& row_values) {
  for (std::int32_t i = 0; i < group.count; ++i) {
    const std::optional<std::int32_t> value = read_field(line, group.first_field + i);
    if (!value) {
      return false;
    }
    const std::int32_t column = group.first_column + i;
    row_values.at(static_cast<std::size_t>(column)) = static_cast<std::int16_t>(*value);
  }
  return true;
}

std::int32_t first_bad_field(std::string_view line, const FieldGroup& group) {
  for (std::int32_t i = 0; i < group.count; ++i) {
    if (!read_field(line, group.first_field + i)) {
      return group.first_field + i;
    }
  }
  return 0;
}

}  // namespace

RowFormat row_format(const GridRanges& ranges) {
  RowFormat format;
  format.first = {ranges.FirstCol, ranges.FirstCol, ranges.ColCount1()};
  if (ranges.CrossesDateLine) {
    const std::int32_t count1 = ranges.ColCount1();
    const std::int32_t count2 = ranges.ColCount2();
    const bool gap = count1 + count2 < kGridColumns;
    const std::int32_t first_field = gap ? kGridColumns - count2 + 1 : count1 + 1;
    format.second = {first_field, ranges.EastFirstCol, count2};
  }
  return format;
}

bool read_row(std::string_view line, const RowFormat& format, RowValues& row_values) {
  return read_group(line, format.first, row_values) &&
         read_group(line, format.second, row_values);
}

std::int32_t first_bad_field(std::string_view line, const RowFormat& format) {
  const std::int32_t field = first_bad_field(line, format.first);
  return field != 0 ? field : first_bad_field(line, format.second);
}

}  // namespace veldmark
