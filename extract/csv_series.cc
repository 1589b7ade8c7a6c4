#include "extract/csv_series.h"
#include "grid/grid_layout.h"

#include <cstring>

namespace veldmark::extract {
namespace {

char* append(char* out, std::string_view text) {
  std::memcpy(out, text.data(), text.size());
  return out + text.size();
}

}  // namespace

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
      times_.push_back(std::to_string(year));
      continue;
    }
    for (std::int32_t month = 1; month <= kMonthsPerYear; ++month) {
      times_.push_back(std::to_string(year) + "," + std::to_string(month) + ",");
    }
  }
}

void CsvSeries::write(std::string_view place, std::span<const std::int16_t> series) {
  for (std::size_t i = 0; i < times_.size(); ++i) {
    if (wide_) {
      write_wide_line(place, times_[i],
                      series.subspan(i * kMonthsPerYear, kMonthsPerYear));
    } else {
      write_long_line(place, times_[i], series[i]);
    }
  }
}

void CsvSeries::write_long_line(std::string_view place, std::string_view month,
                                std::int16_t value) {
  if (place.size() > TextOutput::kMaxReserved / 2) {  // a site's own columns
    output_.write(place);
    place = {};
  }
  const std::size_t most = place.size() + month.size() + ValueTexts::kCopySize + 1;
  char* const begin = output_.reserve(most);
  char* out = append(append(begin, place), month);
  out = texts_.write(value, out);
  *out++ = '\n';
  output_.commit(static_cast<std::size_t>(out - begin));
}

void CsvSeries::write_wide_line(std::string_view place, std::string_view year,
                                std::span<const std::int16_t> values) {
  output_.write(place);
  const std::size_t most =
      year.size() + values.size() * (1 + ValueTexts::kCopySize) + 1;
  char* const begin = output_.reserve(most);
  char* out = append(begin, year);
  for (const std::int16_t value : values) {
    *out++ = ',';
    out = texts_.write(value, out);
  }
  *out++ = '\n';
  output_.commit(static_cast<std::size_t>(out - begin));
}

}  // namespace veldmark::extract
