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

struct Chunk {
  std::size_t months;
  std::size_t rows;
  std::size_t columns;
};

// With chunks of this shape, reading one cell's series and reading one month's map take
// about equally long; other shapes favour one of them (bench/netcdf_chunks). If the box
// is narrower than a chunk, the chunk has more months instead.
Chunk chunk_of(std::size_t months, std::size_t rows, std::size_t columns) {
  constexpr std::size_t kEdge = 60;
  constexpr std::size_t kValues = kEdge * kEdge * kEdge;
  const std::size_t chunk_rows = std::min(kEdge, rows);
  const std::size_t chunk_columns = std::min(kEdge, columns);
  return {.months = std::min(months, kValues / (chunk_rows * chunk_columns)),
          .rows = chunk_rows,
          .columns = chunk_columns};
}

// Writes the values of a grid in slabs of whole chunks, so that each is compressed
// once.
class GridValuesWriter {
 public:
  GridValuesWriter(NetcdfFile& file, int variable, const Chunk& chunk, const Job& job,
                   const BoxCells& box, const SeriesBlock& block)
      : file_(file),
        variable_(variable),
        chunk_(chunk),
        job_(job),
        box_(box),
        block_(block) {}

  void write() {
    const std::size_t row_count = box_.rows_from_south.size();
    for (Part rows = first_part(row_count, chunk_.rows); rows.count > 0;
         rows = next_part(rows, row_count, chunk_.rows)) {
      find_series(rows);
      for (Part months = first_part(block_.month_count(), chunk_.months);
           months.count > 0;
           months = next_part(months, block_.month_count(), chunk_.months)) {
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

  // Looks up the series of the cells in `rows`; empty for cells without data.
  void find_series(const Part& rows) {
    series_.clear();
    for (std::size_t row = 0; row < rows.count; ++row) {
      for (const std::int32_t column : box_.columns_from_west) {
        const std::span<const std::int16_t> series = block_.series(
            {.GridY = box_.rows_from_south[rows.first + row], .GridX = column});
        series_.push_back(has_data(job_, series) ? series
                                                 : std::span<const std::int16_t>());
      }
    }
  }

  // Writes `months` of the series.
  void write_part(const Part& rows, const Part& months) {
    values_.assign(months.count * series_.size(),
                   static_cast<std::int16_t>(job_.input.entry.MissingCode));
    for (std::size_t cell = 0; cell < series_.size(); ++cell) {
      for (std::size_t month = 0; month < months.count && !series_[cell].empty();
           ++month) {
        values_[month * series_.size() + cell] = series_[cell][months.first + month];
      }
    }
    file_.put(variable_, std::array{months.first, rows.first, std::size_t{0}},
              std::array{months.count, rows.count, box_.columns_from_west.size()},
              values_);
  }

  NetcdfFile& file_;
  int variable_;
  const Chunk& chunk_;
  const Job& job_;
  const BoxCells& box_;
  const SeriesBlock& block_;
  std::vector<std::span<const std::int16_t>> series_;
  std::vector<std::int16_t> values_;
};

}  // namespace

void load_netcdf() { netcdf_library(); }

void write_netcdf_grid(const Job& job, const BoxCells& box, const SeriesBlock& block) {
  NetcdfFile file(*job.options.output, if_output_exists(job.options));
  const int bounds = file.add_dimension("bnds", 2);
  const NetcdfTime time(file, job.years, bounds);
  const NetcdfAxis lat(file, "lat", latitudes_of(job, box), bounds);
  const NetcdfAxis lon(file, "lon", longitudes_of(box), bounds);
  const std::array dimensions{time.dimension(), lat.dimension(), lon.dimension()};
  const Chunk chunk = chunk_of(block.month_count(), lat.size(), lon.size());
  const int values = add_values(file, job, dimensions,
                                std::array{chunk.months, chunk.rows, chunk.columns});
  describe_file(file, job);
  time.put(file);
  lat.put(file);
  lon.put(file);
  GridValuesWriter(file, values, chunk, job, box, block).write();
  file.complete();
}

}  // namespace veldmark::extract
