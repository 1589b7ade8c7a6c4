#include "series_to_grid/grid_writer.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace veldmark::series_to_grid {
namespace {

// Returns the index of a month of the grid file among a series' values; month 0 is
// January 1901.
std::ptrdiff_t index_in_series(const Series& series, std::int32_t month) {
  return month - std::ptrdiff_t{series.first_year - kFirstDataYear} * kMonthsPerYear;
}

// Returns the value of a cell in month `index` of the series, with the missing code of
// the grid file.
std::int32_t grid_value(const CellSeries& cell, std::ptrdiff_t index,
                        std::int32_t MissingCode) {
  const std::int32_t value = cell.values.at(static_cast<std::size_t>(index));
  return value == kSeriesMissing ? MissingCode : value;
}

}  // namespace

MonthText::MonthText(const GridForm& form)
    : form_(form),
      line_length_(static_cast<std::size_t>(kGridColumns * form.field_width + 1)),
      text_(line_length_ * kGridRows, '\n') {
  for (std::int32_t south_row = 1; south_row <= kGridRows; ++south_row) {
    for (std::int32_t GridX = 1; GridX <= kGridColumns; ++GridX) {
      set(south_row, GridX, form.MissingCode);
    }
  }
}

void MonthText::set(std::int32_t south_row, std::int32_t GridX, std::int32_t value) {
  const std::int32_t GridY = form_.north_first ? kGridRows + 1 - south_row : south_row;
  const auto width = static_cast<std::size_t>(form_.field_width);
  std::array<char, kPublishedField> digits{};
  const char* const end =
      std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
  const auto length = static_cast<std::size_t>(end - digits.data());

  const auto field =
      text_.begin() +
      static_cast<std::ptrdiff_t>(static_cast<std::size_t>(GridY - 1) * line_length_ +
                                  static_cast<std::size_t>(GridX - 1) * width);
  const auto number =
      std::fill_n(field, static_cast<std::ptrdiff_t>(width - length), ' ');
  std::copy_n(digits.begin(), length, number);
}

std::int64_t month_size(const GridForm& form) {
  return std::int64_t{kGridRows} * (kGridColumns * form.field_width + 1);
}

std::int32_t count_grid_months(std::int32_t last_year) {
  return (last_year - kFirstDataYear + 1) * kMonthsPerYear;
}

void make_grid(const Series& series, const YearRange& years, const GridForm& form,
               const std::function<void(std::string_view)>& take_month) {
  MonthText month_text(form);
  const std::int32_t first_filled =
      count_grid_months(std::max(years.first, series.first_year) - 1);
  const std::int32_t end_filled =
      count_grid_months(std::min(years.last, series.last_year));
  const std::int32_t end = count_grid_months(years.last);
  for (std::int32_t month = 0; month < end; ++month) {
    const std::ptrdiff_t index = index_in_series(series, month);
    const bool filled = first_filled <= month && month < end_filled;
    if (filled) {
      for (const CellSeries& cell : series.cells) {
        month_text.set(cell.south_row, cell.GridX,
                       grid_value(cell, index, form.MissingCode));
      }
    } else if (month == end_filled) {
      month_text = MonthText(form);
    }
    take_month(month_text.text());
  }
}

}  // namespace veldmark::series_to_grid
