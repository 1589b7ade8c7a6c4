#include "extract/csv_series.h"

#include "grid/grid_layout.h"

namespace veldmark::extract {

std::string csv_field(std::string_view field) {
  if (field.find_first_of(",\"\r\n") == std::string_view::npos) {
    return std::string(field);
  }
  std::string quoted = "\"";
  for (const char c : field) {
    quoted += c;
    if (c == '"') {
      quoted += c;
    }
  }
  return quoted + "\"";
}

std::string_view csv_series_heading(bool wide) {
  return wide ? "year,jan,feb,mar,apr,may,jun,jul,aug,sep,oct,nov,dec"
              : "year,month,value";
}

CsvSeries::CsvSeries(TextOutput& output, const ValueTexts& texts, const Years& years,
                     bool wide)
    : output_(output), texts_(texts), wide_(wide) {
  for (std::int32_t year = years.first; year <= years.last; ++year) {
    if (wide) {
      times_.emplace_back(std::to_string(year));
      continue;
    }
    for (std::int32_t month = 1; month <= kMonthsPerYear; ++month) {
      times_.emplace_back(std::to_string(year) + "," + std::to_string(month) + ",");
    }
  }
}

void CsvSeries::write(std::string_view place, std::span<const std::int16_t> series) {
  const PaddedText place_text(place);
  for (std::size_t i = 0; i < series.size(); i += kMonthsPerYear) {
    const std::span<const std::int16_t> values = series.subspan(i, kMonthsPerYear);
    if (wide_) {
      write_wide_line(place_text, times_[i / kMonthsPerYear], values);
    } else {
      write_long_lines(place_text, std::span(times_).subspan(i, kMonthsPerYear),
                       values);
    }
  }
}

// Writes the lines of a year directly into the output's buffer. A value's text leaves
// room for the line end in its kCopySize characters.
void CsvSeries::write_long_lines(const PaddedText& place,
                                 std::span<const PaddedText> months,
                                 std::span<const std::int16_t> values) {
  const std::size_t longest =
      place.padded_size() + months.back().padded_size() + ValueTexts::kCopySize;
  char* const begin = output_.reserve(values.size() * longest);
  char* out = begin;
  for (std::size_t i = 0; i < values.size(); ++i) {
    out = months[i].write(place.write(out));
    out = texts_.write(values[i], out);
    *out++ = '\n';
  }
  output_.commit(static_cast<std::size_t>(out - begin));
}

void CsvSeries::write_wide_line(const PaddedText& place, const PaddedText& year,
                                std::span<const std::int16_t> values) {
  const std::size_t most = place.padded_size() + year.padded_size() +
                           values.size() * (1 + ValueTexts::kCopySize);
  char* const begin = output_.reserve(most);
  char* out = year.write(place.write(begin));
  for (const std::int16_t value : values) {
    *out++ = ',';
    out = texts_.write(value, out);
  }
  *out++ = '\n';
  output_.commit(static_cast<std::size_t>(out - begin));
}

}  // namespace veldmark::extract
