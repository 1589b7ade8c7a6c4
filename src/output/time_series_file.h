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
  using YearText = std::array<char, 5>;

  void write_years(std::span<const std::int16_t> series);

  OutputFile& file_;
  std::string rest_of_heading_;  // what follows the coordinates
  std::vector<YearText> year_texts_;
  ValueText value_text_;
};

}  // namespace veldmark

#endif  // VELDMARK_OUTPUT_TIME_SERIES_FILE_H_
