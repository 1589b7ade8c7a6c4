#include "extract/netcdf_output.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string>
#include <vector>

#include "extract/netcdf_common.h"
#include "extract/netcdf_file.h"

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
    const std::size_t rows = box_.rows_from_south.size();
    for (std::size_t row = 0; row < rows; row += kChunkCells) {
      const std::size_t row_count = std::min(kChunkCells, rows - row);
      for (std::size_t month = 0; month < block_.month_count(); month += kChunkMonths) {
        write_part(row, row_count, month,
                   std::min(kChunkMonths, block_.month_count() - month));
      }
    }
  }

 private:
  // All columns of some rows and months.
  void write_part(std::size_t first_row, std::size_t rows, std::size_t first_month,
                  std::size_t months) {
    const std::size_t columns = box_.columns_from_west.size();
    values_.assign(months * rows * columns,
                   static_cast<std::int16_t>(job_.input.entry.MissingCode));
    for (std::size_t row = 0; row < rows; ++row) {
      for (std::size_t column = 0; column < columns; ++column) {
        const std::span<const std::int16_t> series =
            block_.series({.GridY = box_.rows_from_south[first_row + row],
                           .GridX = box_.columns_from_west[column]});
        if (!has_data(job_, series)) {
          continue;
        }
        for (std::size_t month = 0; month < months; ++month) {
          values_[(month * rows + row) * columns + column] =
              series[first_month + month];
        }
      }
    }
    file_.put(variable_, std::array<std::size_t, 3>{first_month, first_row, 0},
              std::array{months, rows, columns}, values_);
  }

  NetcdfFile& file_;
  int variable_;
  const Job& job_;
  const BoxCells& box_;
  const SeriesBlock& block_;
  std::vector<std::int16_t> values_;
};

// A name for a variable that holds a column of the table of sites.
std::string column_name(std::string_view title, std::size_t index) {
  std::string name = "site_";
  for (const char c : title) {
    const bool plain = std::isalnum(static_cast<unsigned char>(c)) != 0;
    name += plain ? c : '_';
  }
  return name + "_" + std::to_string(index + 1);
}

// The columns of the table of sites as texts.
class SiteColumns {
 public:
  SiteColumns(NetcdfFile& file, const SiteTable& table, int sites) : table_(table) {
    for (std::size_t i = 0; i < table.header.size(); ++i) {
      const bool is_name = i == table.name_column;
      variables_.push_back(
          file.add_variable(is_name ? "site_name" : column_name(table.header[i], i),
                            NetcdfFile::Type::kString, std::array{sites}));
      file.add_text(variables_.back(), "long_name", table.header[i]);
    }
  }

  void put(NetcdfFile& file, std::span<const SiteSeries> sites) const {
    for (std::size_t i = 0; i < variables_.size(); ++i) {
      std::vector<std::string> texts;
      for (const SiteSeries& site : sites) {
        texts.push_back(table_.sites[site.site].fields[i]);
      }
      file.put(variables_[i], texts);
    }
  }

 private:
  const SiteTable& table_;
  std::vector<int> variables_;
};

// Where the sites and their cells are.
class SitePlaces {
 public:
  SitePlaces(NetcdfFile& file, int sites) {
    const std::array dimensions{sites};
    number_ = file.add_variable("site", NetcdfFile::Type::kInt, dimensions);
    file.add_text(number_, "cf_role", "timeseries_id");
    file.add_text(number_, "long_name", "number of the site in its table");
    lat_ = add_degrees(file, "lat", dimensions);
    lon_ = add_degrees(file, "lon", dimensions);
    cell_lat_ = add_degrees(file, "cell_lat", dimensions);
    cell_lon_ = add_degrees(file, "cell_lon", dimensions);
    distance_ = file.add_variable("distance", NetcdfFile::Type::kDouble, dimensions);
    file.add_text(distance_, "long_name", "distance of the cell's centre");
    file.add_text(distance_, "units", "km");
  }

  void put(NetcdfFile& file, const Job& job, const SiteTable& table,
           std::span<const SiteSeries> sites) const {
    std::vector<std::int32_t> numbers;
    std::array<std::vector<double>, 5> values;
    for (const SiteSeries& site : sites) {
      const Point& point = table.sites[site.site].point;
      const Point centre = centre_of(site.cell, job.input.entry.row_order);
      numbers.push_back(static_cast<std::int32_t>(site.site) + 1);
      values[0].push_back(point.latitude);
      values[1].push_back(point.longitude);
      values[2].push_back(centre.latitude);
      values[3].push_back(centre.longitude);
      values[4].push_back(distance_km(point, centre));
    }
    file.put(number_, numbers);
    const std::array variables{lat_, lon_, cell_lat_, cell_lon_, distance_};
    for (std::size_t i = 0; i < variables.size(); ++i) {
      file.put(variables[i], values[i]);
    }
  }

 private:
  int number_ = 0;
  int lat_ = 0;
  int lon_ = 0;
  int cell_lat_ = 0;
  int cell_lon_ = 0;
  int distance_ = 0;
};

}  // namespace

bool has_netcdf() { return true; }

void write_netcdf_grid(const Job& job, const BoxCells& box, const SeriesBlock& block) {
  NetcdfFile file(*job.options.output);
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

void write_netcdf_sites(const Job& job, const SiteTable& table,
                        std::span<const SiteSeries> sites) {
  NetcdfFile file(*job.options.output);
  const int bounds = file.add_dimension("bnds", 2);
  const NetcdfTime time(file, job.years, bounds);
  const int site = file.add_dimension("site", sites.size());
  const SitePlaces places(file, site);
  const SiteColumns columns(file, table, site);
  const std::size_t months = sites.front().series.size();
  const int values = add_values(file, job, std::array{site, time.dimension()},
                                std::array{std::size_t{1}, months});
  file.add_text(values, "coordinates", "lat lon site");
  file.add_text(NetcdfFile::kGlobal, "featureType", "timeSeries");
  describe_file(file, job);
  file.end_definitions();
  time.put(file);
  places.put(file, job, table, sites);
  columns.put(file, sites);
  for (std::size_t i = 0; i < sites.size(); ++i) {
    file.put(values, std::array{i, std::size_t{0}}, std::array{std::size_t{1}, months},
             sites[i].series);
  }
  file.complete();
}

}  // namespace veldmark::extract
