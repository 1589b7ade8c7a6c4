// The time-series file (.TSF): a heading and a line for each year of every saved cell.

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

// Values are written in stored units, without scaling; a month without data holds the
// missing code.
class TimeSeriesFile : public CellSink {
 public:
  // Writes to `file`, which must outlive it, series of the years `years`.
  TimeSeriesFile(OutputFile& file, const VariableEntry& entry, const YearSpan& years);

  // Throws FileFault where a write fails.
  void add(const SavedCell& cell) override;

 private:
  // A blank and the year in four columns.
  static constexpr std::size_t kYearTextSize = 5;
  using YearText = std::array<char, kYearTextSize>;

  // A year line: the year, twelve values, the line end.
  static constexpr std::size_t kYearLineSize =
      kYearTextSize + kMonthsPerYear * ValueText::kWidth + 1;

  // All years of a cell fit into what a file reserves at once.
  static_assert((kLastDataYear - kFirstDataYear + 1) * kYearLineSize +
                    ValueText::kCopied <=
                OutputFile::kMostReserved);

  void write_years(std::span<const std::int16_t> series);

  OutputFile& file_;
  std::string heading_suffix_;  // what follows the coordinates
  std::vector<YearText> year_texts_;
  ValueText value_text_;
};

}  // namespace veldmark

#endif  // VELDMARK_OUTPUT_TIME_SERIES_FILE_H_
