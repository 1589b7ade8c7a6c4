#include <array>
#include <cctype>
#include <string>
#include <vector>

#include "extract/netcdf_common.h"
#include "extract/netcdf_file.h"
#include "extract/netcdf_output.h"
#include "extract/output_names.h"

namespace veldmark::extract {
namespace {

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

void write_netcdf_sites(const Job& job, const SiteTable& table,
                        std::span<const SiteSeries> sites) {
  NetcdfFile file(*job.options.output, earlier_output(job.options));
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
