#include "catalogue/row_format.h"

#include <algorithm>
#include <initializer_list>
#include <optional>
#include <string>

#include "util/fixed_field.h"

namespace veldmark {
namespace {

constexpr auto kCharacters = static_cast<std::int32_t>(kFieldWidth);

// A number and its character position in a template, counted from 1.
struct Insertion {
  std::size_t position;
  std::int32_t number;
};

// Returns `text` with numbers of five characters written into it.
RowFormat with_numbers(std::string text, std::initializer_list<Insertion> insertions) {
  constexpr int kNumberWidth = 5;
  for (const Insertion& insertion : insertions) {
    text.replace(insertion.position - 1, kNumberWidth,
                 fixed_integer(insertion.number, kNumberWidth));
  }
  return RowFormat::cut(text);
}

// Returns the groups of fields in a row format: one or two, counted from field 1. Their
// columns are not set.
FieldGroups parse_row_format(std::string_view format) {
  FieldGroups groups;
  FieldGroup* group = &groups.first;
  std::int32_t next_field = 1;
  format.remove_prefix(1);  // the parenthesis
  while (!format.empty()) {
    const std::size_t letter = format.find_first_of("xi");
    const std::int32_t number = parse_integer(format.substr(0, letter)).value();
    if (format[letter] == 'x') {
      next_field += number / kCharacters;
    } else {
      group->first_field = next_field;
      group->count = number;
      next_field += number;
      group = &groups.second;
    }
    format.remove_prefix(format.find_first_of(",)") + 1);
  }
  return groups;
}

// Returns the value of a field; nullopt if it is not an integer or the line is too
// short. Fields outside 1..720 read as 0, like blank ones.
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
    const std::int32_t GridX = group.first_column + i;
    row_values.at(static_cast<std::size_t>(GridX)) = static_cast<std::int16_t>(*value);
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
  const std::int32_t count1 = ranges.ColCount1();
  const std::int32_t count2 = ranges.ColCount2();
  if (ranges.CrossesDateLine) {
    const std::int32_t gap = kGridColumns - (count1 + count2);
    if (gap > 0) {
      return with_numbers("(     i5,     x,     i5)",
                          {{2, count1}, {10, kCharacters * gap}, {17, count2}});
    }
    return with_numbers("(     i5,            i5)", {{2, count1}, {17, count2}});
  }
  if (ranges.FirstCol > 1) {
    return with_numbers("(     x,     i5)",
                        {{2, kCharacters * (ranges.FirstCol - 1)}, {9, count1}});
  }
  return with_numbers("(            i5)", {{9, count1}});
}

FieldGroups field_groups(const GridRanges& ranges) {
  const RowFormat format = row_format(ranges);
  FieldGroups groups = parse_row_format(format.trimmed());
  groups.first.first_column = ranges.FirstCol;
  groups.second.first_column = ranges.EastFirstCol;
  const std::int32_t west_of_grid = std::max(1 - ranges.FirstCol, 0);
  groups.first.first_field -= west_of_grid;
  return groups;
}

bool read_row(std::string_view line, const FieldGroups& groups, RowValues& row_values) {
  return read_group(line, groups.first, row_values) &&
         read_group(line, groups.second, row_values);
}

std::int32_t first_bad_field(std::string_view line, const FieldGroups& groups) {
  const std::int32_t field = first_bad_field(line, groups.first);
  return field != 0 ? field : first_bad_field(line, groups.second);
}

}  // namespace veldmark
