#include "extract/box_job.h"

#include <algorithm>
#include <cstdint>

#include "catalogue/variable_name.h"
#include "extract/area_mean.h"
#include "extract/csv_series.h"
#include "extract/netcdf_output.h"
#include "extract/output_names.h"
#include "extract/text_output.h"
#include "extract/tsf_output.h"
#include "extract/value_texts.h"
#include "extract/variance_columns.h"
#include "grid/grid_layout.h"

namespace veldmark::extract {
namespace {

GridRanges chosen_ranges(const Options& options, RowOrder order) {
  if (options.cell) {
    const Cell cell = cell_of(*options.cell, order);
    GridRanges ranges;
    ranges.FirstRow = ranges.LastRow = cell.GridY;
    ranges.FirstCol = ranges.LastCol = cell.GridX;
    return ranges;
  }
  return ranges_of(options.box.value_or(Box{}), order);
}

std::vector<Cell> all_cells(const BoxCells& box) {
  std::vector<Cell> cells;
  cells.reserve(box.rows_from_south.size() * box.columns_from_west.size());
  for (const std::int32_t row : box.rows_from_south) {
    for (const std::int32_t column : box.columns_from_west) {
      cells.push_back({.GridY = row, .GridX = column});
    }
  }
  return cells;
}

// "60.25,-139.75,"
std::string place_columns(const Cell& cell, RowOrder order) {
  const Point centre = centre_of(cell, order);
  return degrees_text(centre.latitude) + "," + degrees_text(centre.longitude) + ",";
}

// Calls `use` with each cell that has data, and its series.
template <typename Use>
void for_each_series(const Job& job, const std::vector<Cell>& cells,
                     const SeriesBlock& block, Use use) {
  for (const Cell& cell : cells) {
    const std::span<const std::int16_t> series = block.series(cell);
    if (has_data(job, series)) {
      use(cell, series);
    }
  }
}

void write_series(const Job& job, const std::vector<Cell>& cells,
                  const SeriesBlock& block, TextOutput& output) {
  const VariableEntry& entry = job.input.entry;
  const ValueTexts texts(job.options.stored ? 0 : decimals_of(entry),
                         entry.MissingCode);
  output.write("lat,lon,");
  output.write(csv_series_heading(job.options.wide));
  output.write("\n");
  CsvSeries csv(output, texts, job.years, job.options.wide);
  for_each_series(job, cells, block,
                  [&](const Cell& cell, std::span<const std::int16_t> series) {
                    csv.write(place_columns(cell, entry.row_order), series);
                  });
}

void write_tests(const Job& job, const std::vector<Cell>& cells,
                 const SeriesBlock& block, TextOutput& output) {
  const VariableEntry& entry = job.input.entry;
  output.write("lat,lon,");
  output.write(kVarianceHeading);
  output.write("\n");
  for_each_series(job, cells, block,
                  [&](const Cell& cell, std::span<const std::int16_t> series) {
                    output.write(place_columns(cell, entry.row_order));
                    output.write(variance_columns(series, second_period(job), entry));
                    output.write("\n");
                  });
}

void write_area_mean(const Job& job, const std::vector<Cell>& cells,
                     const SeriesBlock& block, TextOutput& output) {
  const VariableEntry& entry = job.input.entry;
  AreaMean mean(block.month_count(), entry.MissingCode);
  for_each_series(job, cells, block,
                  [&](const Cell& cell, std::span<const std::int16_t> series) {
                    mean.add(centre_of(cell, entry.row_order).latitude, series);
                  });
  output.write("year,month,value,cells\n");
  for (std::size_t month = 0; month < block.month_count(); ++month) {
    const auto number = static_cast<std::int32_t>(month);
    output.write(std::to_string(job.years.first + number / kMonthsPerYear) + "," +
                 std::to_string(number % kMonthsPerYear + 1) + "," +
                 mean.mean_text(month, decimals_of(entry)) + "," +
                 std::to_string(mean.cells(month)) + "\n");
  }
}

void write_csv(const Job& job, const std::vector<Cell>& cells,
               const SeriesBlock& block) {
  TextOutput output(job.options.output, earlier_output(job.options));
  if (job.options.area_mean) {
    write_area_mean(job, cells, block, output);
  } else if (job.options.variance_test) {
    write_tests(job, cells, block, output);
  } else {
    write_series(job, cells, block, output);
  }
  output.complete();
}

// Fails when there is nothing to write. Returns how many cells have data.
std::size_t expect_data(const Job& job, const std::vector<Cell>& cells,
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
        "the cell at " + degrees_text(centre.latitude) + ", " +
        degrees_text(centre.longitude) +
        " has no data; --sites with --radius finds the nearest that has");
  }
  throw NothingFound("no cell with data: " + count_of(std::ssize(cells), "cell") +
                     " looked at, all without");
}

std::string summary_of(const Job& job, const BoxCells& box, std::size_t looked_at,
                       std::size_t saved) {
  std::string text = count_of(box.ranges.CellCount(), "cell") + " in the box, ";
  if (job.options.every > 1) {
    text += std::to_string(looked_at) + " kept by --every " +
            std::to_string(job.options.every) + ", ";
  }
  return text + std::to_string(looked_at - saved) + " without data passed over, " +
         std::to_string(saved) + (job.options.area_mean ? " averaged" : " saved");
}

}  // namespace

BoxCells find_box_cells(const Options& options, RowOrder order) {
  BoxCells box;
  box.ranges = chosen_ranges(options, order);
  box.lattice = kept_cells(box.ranges, options.every);
  box.rows_from_south = box.lattice.rows;
  if (order == RowOrder::kNorthFirst) {
    std::reverse(box.rows_from_south.begin(), box.rows_from_south.end());
  }
  // Across the meridian the columns of the eastern hemisphere come first.
  box.columns_from_west = box.lattice.columns;
  if (box.ranges.CrossesDateLine) {
    const auto east =
        std::lower_bound(box.columns_from_west.begin(), box.columns_from_west.end(),
                         box.ranges.EastFirstCol);
    std::rotate(box.columns_from_west.begin(), east, box.columns_from_west.end());
  }
  return box;
}

std::string extract_box(const Job& job) {
  const BoxCells box = find_box_cells(job.options, job.input.entry.row_order);
  const std::vector<Cell> cells = all_cells(box);
  if (cells.empty()) {
    throw NothingFound(
        "no cell has its centre in the box: centres lie at .25 and .75 degrees; --cell "
        "takes the cell that holds a point");
  }
  const SeriesBlock block = read_cells_of(job, CellSet(cells));
  const std::size_t saved = expect_data(job, cells, block);
  if (job.options.format == Format::kTsf) {
    write_tsf(job, box, block);
  } else if (job.options.format == Format::kNetcdf) {
    write_netcdf_grid(job, box, block);
  } else {
    write_csv(job, cells, block);
  }
  return summary_of(job, box, cells.size(), saved);
}

}  // namespace veldmark::extract
