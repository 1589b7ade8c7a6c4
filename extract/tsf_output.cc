#include "extract/tsf_output.h"

#include <array>
#include <string>
#include <vector>

#include "extract/output_names.h"
#include "extract/release.h"
#include "output/cell_list_file.h"
#include "output/output_file.h"
#include "output/time_series_file.h"
#include "util/failure.h"
#include "util/part_file.h"
#include "util/without_folders.h"

namespace veldmark::extract {
namespace {

// A line of a year has 78 characters; all lines of a cell are reserved at once.
constexpr std::int32_t kMaxYears = 800;
constexpr std::size_t kYearLine = 78;
static_assert((kMaxYears + 1) * kYearLine <= OutputFile::kMaxReserved);

// Opens the part file of `name` as the dialogue opens its outputs.
OutputFile output_into(PartFile& part, const std::string& name) {
  part.release_lock();
  return OutputFile(PartFile::part_name(name));
}

void write_cells(const Job& job, const BoxCells& box, const SeriesBlock& block,
                 const std::array<CellSink*, 2>& sinks) {
  const RowOrder order = job.input.entry.row_order;
  std::int32_t number = 0;
  for (const std::int32_t row : box.lattice.rows) {
    const Coordinate latitude(CellLat(order)[row]);
    for (const std::int32_t column : box.lattice.columns) {
      const Cell cell{.GridY = row, .GridX = column};
      const std::span<const std::int16_t> series = block.series(cell);
      if (!has_data(job, series)) {
        continue;
      }
      ++number;
      const Coordinate longitude(CellLon[column]);
      for (CellSink* sink : sinks) {
        sink->add({number, cell.GridX, cell.GridY, longitude, latitude, series});
      }
    }
  }
}

}  // namespace

void write_tsf(const Job& job, const BoxCells& box, const SeriesBlock& block) {
  if (job.years.last - job.years.first >= kMaxYears) {
    throw Failure("tsf holds at most 800 years; choose them with --years");
  }
  const std::vector<std::string> names = output_names(job.options);
  PartFile series_part(names.front(), if_output_exists(job.options));
  PartFile list_part(names.back(), if_output_exists(job.options));
  OutputFile series_file = output_into(series_part, names.front());
  OutputFile list_file = output_into(list_part, names.back());
  const YearSpan years{.FYOD = job.years.first, .LYOD = job.years.last};
  const VariableEntry entry =
      with_release(job.input.entry, release_of(job.input.entry, job.input.name));
  TimeSeriesFile series(series_file, entry, years);
  CellListFile list(list_file, OutputName::cut(without_folders(names.front())), entry,
                    box.ranges.CrossesDateLine);
  write_cells(job, box, block, {&list, &series});
  series_file.close();
  list_file.close();
  PartFile::complete_both(series_part, list_part, PartFile::Durability::kUnsynced);
}

}  // namespace veldmark::extract
