#include "output/time_series_file.h"

#include <algorithm>
#include <cstring>

#include "util/fixed_field.h"

namespace veldmark {
namespace {

// Returns the part of a cell's heading after the coordinates.
std::string heading_suffix(const VariableEntry& entry) {
  std::string rest = "    ";
  rest += entry.OutputPrefix.view();
  rest += entry.TitleText.view();
  rest += entry.RFMT.view();
  return rest + "\n";
}

}  // namespace

TimeSeriesFile::TimeSeriesFile(OutputFile& file, const VariableEntry& entry,
                               const YearSpan& years)
    : file_(file), heading_suffix_(heading_suffix(entry)) {
  for (std::int32_t year = years.FYOD; year <= years.LYOD; ++year) {
    const std::string text = " " + fixed_integer(year, 4);
    YearText& year_text = year_texts_.emplace_back();
    std::copy(text.begin(), text.end(), year_text.begin());
  }
}

void TimeSeriesFile::add(const SavedCell& cell) {
  file_.write(" " + cell.longitude.text + cell.latitude.text + heading_suffix_);
  write_years(cell.series);
}

// Writes the year lines of a cell straight into the buffer of the file.
void TimeSeriesFile::write_years(std::span<const std::int16_t> series) {
  const std::size_t size = year_texts_.size() * kYearLineSize;
  char* out = file_.reserve(size + ValueText::kCopySize);
  const std::int16_t* value = series.data();
  for (const YearText& year_text : year_texts_) {
    std::memcpy(out, year_text.data(), kYearTextSize);
    out += kYearTextSize;
    for (std::int32_t month = 0; month < kMonthsPerYear; ++month) {
      out = value_text_.write(*value, out);
      ++value;
    }
    *out = '\n';
    ++out;
  }
  file_.commit(size);
}

}  // namespace veldmark
