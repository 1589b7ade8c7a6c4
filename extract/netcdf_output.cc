#include "extract/netcdf_output.h"

#include <algorithm>
#include <array>
#include <vector>

#include "extract/netcdf_axes.h"
#include "extract/netcdf_common.h"
#include "extract/netcdf_file.h"
#include "extract/netcdf_library.h"
#include "extract/output_names.h"

namespace veldmark::extract {
namespace {

// The sizes of the chunks of a grid: a series of a cell and a map of a month both touch
// few of them.
constexpr std::size_t kChunkMonths = 240;
constexpr std::size_t kChunkCells = 30;

// Writes the values of a grid, each chunk once.
class GridValuesWriter {
 public:
  GridValuesWriter(NetcdfFile& file, int variable, const Job& job, const BoxCells& box,
                   const SeriesBlock& block)
      : file_(file), variable_(variable), job_(job), box_(box), block_(block) {}

  void write() {
    const std::size_t row_count = box_.rows_from_south.size();
    for (Part rows = first_part(row_count, kChunkCells); rows.count > 0;
         rows = next_part(rows, row_count, kChunkCells)) {
      for (Part months = first_part(block_.month_count(), kChunkMonths);
           months.count > 0;
           months = next_part(months, block_.month_count(), kChunkMonths)) {
        write_part(rows, months);
      }
    }
  }

 private:
  // `count` rows or months from `first` on, counted from 0.
  struct Part {
    std::size_t first;
    std::size_t count;
  };

  static Part first_part(std::size_t all, std::size_t most) {
    return {0, std::min(all, most)};
  }
  static Part next_part(const Part& part, std::size_t all, std::size_t most) {
    const std::size_t first = part.first + part.count;
    return {first, std::min(all - first, most)};
  }

  // All columns of some rows and months.
  void write_part(const Part& rows, const Part& months) {
    const std::size_t columns = box_.columns_from_west.size();
    values_.assign(months.count * rows.count * columns,
                   static_cast<std::int16_t>(job_.input.entry.MissingCode));
    for (std::size_t row = 0; row < rows.count; ++row) {
      for (std::size_t column = 0; column < columns; ++column) {
        const std::span<const std::int16_t> series =
            block_.series({.GridY = box_.rows_from_south[rows.first + row],
                           .GridX = box_.columns_from_west[column]});
        if (!has_data(job_, series)) {
          continue;
        }
        for (std::size_t month = 0; month < months.count; ++month) {
          values_[(month * rows.count + row) * columns + column] =
              series[months.first + month];
        }
      }
    }
    file_.put(variable_, std::array<std::size_t, 3>{months.first, rows.first, 0},
              std::array{months.count, rows.count, columns}, values_);
  }

  NetcdfFile& file_;
  int variable_;
  const Job& job_;
  const BoxCells& box_;
  const SeriesBlock& block_;
  std::vector<std::int16_t> values_;
};

}  // namespace

void load_netcdf() { netcdf_library(); }

void write_netcdf_grid(const Job& job, const BoxCells& box, const SeriesBlock& block) {
  NetcdfFile file(*job.options.output, earlier_output(job.options));
  const int bounds = file.add_dimension("bnds", 2);
  const NetcdfTime time(file, job.years, bounds);
  const NetcdfAxis lat(file, "lat", latitudes_of(job, box), bounds);
  const NetcdfAxis lon(file, "lon", longitudes_of(box), bounds);
  const std::array dimensions{time.dimension(), lat.dimension(), lon.dimension()};
  const std::array chunks{std::min(kChunkMonths, block.month_count()),
                          std::min(kChunkCells, lat.size()),
                          std::min(kChunkCells, lon.size())};
  const int values = add_values(file, job, dimensions, chunks);
  describe_file(file, job);
  file.end_definitions();
  time.put(file);
  lat.put(file);
  lon.put(file);
  GridValuesWriter(file, values, job, box, block).write();
  file.complete();
}

}  // namespace veldmark::extract
