#include "extract/box_job.h"

#include <cstddef>
#include <cstdint>

#include "extract/area_mean.h"
#include "extract/box_cells.h"
#include "extract/box_csv.h"
#include "extract/decimal_text.h"
#include "extract/netcdf_output.h"
#include "extract/tsf_output.h"

namespace veldmark::extract {
namespace {

// Returns how many cells have data. Throws NothingFound if none has.
std::size_t count_cells_with_data(const Job& job, const std::vector<Cell>& cells,
                                  const SeriesBlock& block) {
  std::size_t count = 0;
  for_each_series(
      job, cells, block,
      [&](const Cell& /*cell*/, std::span<const std::int16_t> /*series*/) { ++count; });
  if (count > 0) {
    return count;
  }
  if (job.options.cell) {
    const Point centre = centre_of(cells.front(), job.input.entry.row_order);
    throw NothingFound(
        "the cell at " + short_decimal_text(centre.latitude) + ", " +
        short_decimal_text(centre.longitude) +
        " has no data; --sites with --radius finds the nearest that has");
  }
  throw NothingFound("no cell has data (" + count_of(std::ssize(cells), "cell") +
                     " read)");
}

std::string summary_of(const Job& job, const BoxCells& box, std::size_t looked_at,
                       std::size_t saved) {
  std::string text = count_of(box.ranges.CellCount(), "cell") + " in the box, ";
  if (job.options.every > 1) {
    text += std::to_string(looked_at) + " kept by --every " +
            std::to_string(job.options.every) + ", ";
  }
  return text + std::to_string(looked_at - saved) + " without data skipped, " +
         std::to_string(saved) + (job.options.area_mean ? " averaged" : " saved");
}

void write_area_mean(const Job& job, const BoxCells& box, const SeriesBlock& block) {
  const VariableEntry& entry = job.input.entry;
  AreaMean mean(block.month_count(), entry.MissingCode);
  for_each_series(job, box.cells, block,
                  [&](const Cell& cell, std::span<const std::int16_t> series) {
                    mean.add(centre_of(cell, entry.row_order).latitude, series);
                  });
  if (job.options.format == Format::kNetcdf) {
    write_netcdf_area_mean(job, box, mean);
  } else {
    write_area_mean_csv(job, mean);
  }
}

void write_output(const Job& job, const BoxCells& box, const SeriesBlock& block) {
  if (job.options.area_mean) {
    write_area_mean(job, box, block);
  } else if (job.options.format == Format::kTsf) {
    write_tsf(job, box, block);
  } else if (job.options.format == Format::kCsv) {
    write_box_csv(job, box, block);
  } else if (job.options.variance_test) {
    write_netcdf_grid_tests(job, box, block);
  } else {
    write_netcdf_grid(job, box, block);
  }
}

}  // namespace

std::string extract_box(const Job& job) {
  const BoxCells box = find_box_cells(job.options, job.input.entry.row_order);
  if (box.cells.empty()) {
    throw NothingFound(
        "no cell has its centre in the box: centres lie at .25 and .75 degrees; --cell "
        "takes the cell that holds a point");
  }
  const SeriesBlock block = read_cells_of(job, CellSet(box.cells));
  const std::size_t saved = count_cells_with_data(job, box.cells, block);
  write_output(job, box, block);
  return summary_of(job, box, box.cells.size(), saved);
}

}  // namespace veldmark::extract
