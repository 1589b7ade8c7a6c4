// The time-series file (.TSF): for each saved cell a heading, and one line per year.

#ifndef VELDMARK_OUTPUT_TIME_SERIES_FILE_H_
#define VELDMARK_OUTPUT_TIME_SERIES_FILE_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "catalogue/variable_catalogue.h"
#include "grid/grid_layout.h"
#include "output/output_file.h"
#include "output/save_cells.h"
#include "output/value_text.h"
#include "selection/search_region.h"

namespace veldmark {

// Values are written in stored units, without scaling. A month without data has the
// missing code.
class TimeSeriesFile : public CellSink {
 public:
  // Writes series of `years`. Requires that `file` outlives this object.
  TimeSeriesFile(OutputFile& file, const VariableEntry& entry, const YearSpan& years);

  // Throws FileFault if a write fails.
  void add(const SavedCell& cell) override;

 private:
  // A blank and the year, four digits.
  static constexpr std::size_t kYearTextSize = 5;
  using YearText = std::array<char, kYearTextSize>;

  // A year line: the year, twelve values and a newline.
  static constexpr std::size_t kYearLineSize =
      kYearTextSize + kMonthsPerYear * ValueText::kWidth + 1;

  // All year lines of a cell fit into one reservation.
  static_assert((kLastDataYear - kFirstDataYear + 1) * kYearLineSize +
                    ValueText::kCopySize <=
                OutputFile::kMaxReserved);

  void write_years(std::span<const std::int16_t> series);

  OutputFile& file_;
  std::string heading_suffix_;  // the part of a heading after the coordinates
  std::vector<YearText> year_texts_;
  ValueText value_text_;
};

}  // namespace veldmark

#endif  // VELDMARK_OUTPUT_TIME_SERIES_FILE_H_
