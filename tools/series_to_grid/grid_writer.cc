#include "series_to_grid/grid_writer.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace veldmark {
namespace {

constexpr int kMonthsPerYear = 12;

// Index of a month of the grid file among a series' values; month 0 is January 1901.
std::ptrdiff_t index_in_series(const Series& series, int month) {
  return month - std::ptrdiff_t{series.first_year - kFirstGridYear} * kMonthsPerYear;
}

// The value of a cell in month `index` of the series, as the grid file holds it.
int grid_value(const CellSeries& cell, std::ptrdiff_t index, int MissingCode) {
  const int value = cell.values.at(static_cast<std::size_t>(index));
  return value == kSeriesMissing ? MissingCode : value;
}

}  // namespace

MonthText::MonthText(const GridForm& form)
    : form_(form),
      line_length_(static_cast<std::size_t>(kGridColumns * form.field_width + 1)),
      text_(line_length_ * kGridRows, '\n') {
  for (int row = 1; row <= kGridRows; ++row) {
    for (int column = 1; column <= kGridColumns; ++column) {
      set(row, column, form.MissingCode);
    }
  }
}

void MonthText::set(int south_row, int GridX, int value) {
  const int row = form_.north_first ? kGridRows + 1 - south_row : south_row;
  const auto width = static_cast<std::size_t>(form_.field_width);
  std::array<char, kPublishedField> digits{};
  const char* const end =
      std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
  const auto length = static_cast<std::size_t>(end - digits.data());

  const auto field =
      text_.begin() +
      static_cast<std::ptrdiff_t>(static_cast<std::size_t>(row - 1) * line_length_ +
                                  static_cast<std::size_t>(GridX - 1) * width);
  const auto number =
      std::fill_n(field, static_cast<std::ptrdiff_t>(width - length), ' ');
  std::copy_n(digits.begin(), length, number);
}

int count_grid_months(int last_year) {
  return (last_year - kFirstGridYear + 1) * kMonthsPerYear;
}

void make_grid(const Series& series, const YearRange& years, const GridForm& form,
               const std::function<void(std::string_view)>& take_month) {
  MonthText month_text(form);
  const int first_filled =
      count_grid_months(std::max(years.first, series.first_year) - 1);
  const int end_filled = count_grid_months(std::min(years.last, series.last_year));
  const int end = count_grid_months(years.last);
  for (int month = 0; month < end; ++month) {
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

}  // namespace veldmark
