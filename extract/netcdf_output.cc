#include "extract/netcdf_output.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "extract/netcdf_common.h"
#include "extract/netcdf_file.h"
#include "extract/netcdf_library.h"
#include "extract/output_names.h"

namespace veldmark::extract {
namespace {

constexpr double kHalfACell = 0.25;
constexpr double kCircle = 360;

// The sizes of the chunks of a grid: a series of a cell and a map of a month both touch
// few of them.
constexpr std::size_t kChunkMonths = 240;
constexpr std::size_t kChunkCells = 30;

std::vector<double> latitudes_of(const Job& job, const BoxCells& box) {
  std::vector<double> latitudes;
  for (const std::int32_t row : box.rows_from_south) {
    latitudes.push_back(centre_of({row, 1}, job.input.entry.row_order).latitude);
  }
  return latitudes;
}

std::vector<double> longitudes_of(const BoxCells& box) {
  std::vector<double> longitudes;
  for (const std::int32_t column : box.columns_from_west) {
    double longitude = centre_of({1, column}, RowOrder::kSouthFirst).longitude;
    if (!longitudes.empty() && longitude < longitudes.front()) {
      longitude += kCircle;
    }
    longitudes.push_back(longitude);
  }
  return longitudes;
}

// A latitude or longitude of a grid, with its bounds.
class Axis {
 public:
  Axis(NetcdfFile& file, std::string_view name, std::vector<double> centres, int bounds)
      : centres_(std::move(centres)),
        dimension_(file.add_dimension(name, centres_.size())),
        variable_(add_degrees(file, name, std::array{dimension_})),
        ends_(file.add_variable(std::string(name) + "_bnds", NetcdfFile::Type::kDouble,
                                std::array{dimension_, bounds})) {
    file.add_text(variable_, "axis", name == "lat" ? "Y" : "X");
    file.add_text(variable_, "bounds", std::string(name) + "_bnds");
  }

  [[nodiscard]] int dimension() const { return dimension_; }
  [[nodiscard]] std::size_t size() const { return centres_.size(); }

  void put(NetcdfFile& file) const {
    std::vector<double> ends;
    for (const double centre : centres_) {
      ends.insert(ends.end(), {centre - kHalfACell, centre + kHalfACell});
    }
    file.put(variable_, centres_);
    file.put(ends_, ends);
  }

 private:
  std::vector<double> centres_;
  int dimension_;
  int variable_;
  int ends_;
};

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
  const Axis lat(file, "lat", latitudes_of(job, box), bounds);
  const Axis lon(file, "lon", longitudes_of(box), bounds);
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
