#include "extract/netcdf_site_table.h"

#include <array>
#include <cctype>
#include <cstdint>
#include <string>

#include "extract/netcdf_common.h"

namespace veldmark::extract {
namespace {

// Returns the name of the variable for a column of the table.
std::string column_name(std::string_view title, std::size_t index) {
  std::string name = "site_";
  for (const char c : title) {
    const bool plain = std::isalnum(static_cast<unsigned char>(c)) != 0;
    name += plain ? c : '_';
  }
  return name + "_" + std::to_string(index + 1);
}

}  // namespace

NetcdfSiteTable::NetcdfSiteTable(NetcdfFile& file, const SiteTable& table, int sites)
    : table_(table),
      number_(file.add_variable("site", NetcdfFile::Type::kInt, std::array{sites})),
      lat_(add_degrees(file, "lat", std::array{sites})),
      lon_(add_degrees(file, "lon", std::array{sites})),
      cell_lat_(add_degrees(file, "cell_lat", std::array{sites})),
      cell_lon_(add_degrees(file, "cell_lon", std::array{sites})),
      distance_(
          file.add_variable("distance", NetcdfFile::Type::kDouble, std::array{sites})) {
  file.add_text(number_, "long_name", "number of the site in its table");
  file.add_text(distance_, "long_name", "distance of the cell's centre");
  file.add_text(distance_, "units", "km");
  for (const int variable : {cell_lat_, cell_lon_, distance_}) {
    file.add_text(variable, "coordinates", kCoordinates);
  }
  for (std::size_t i = 0; i < table.header.size(); ++i) {
    const bool is_name = i == table.name_column;
    columns_.push_back(
        file.add_variable(is_name ? "site_name" : column_name(table.header[i], i),
                          NetcdfFile::Type::kString, std::array{sites}));
    file.add_text(columns_.back(), "long_name", table.header[i]);
  }
}

void NetcdfSiteTable::put(NetcdfFile& file, const Job& job,
                          std::span<const SiteSeries> sites) const {
  put_places(file, job, sites);
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    std::vector<std::string> texts;
    for (const SiteSeries& site : sites) {
      texts.push_back(table_.sites[site.site_index].fields[i]);
    }
    file.put(columns_[i], texts);
  }
}

void NetcdfSiteTable::put_places(NetcdfFile& file, const Job& job,
                                 std::span<const SiteSeries> sites) const {
  const std::array variables{lat_, lon_, cell_lat_, cell_lon_, distance_};
  std::vector<std::int32_t> numbers;
  std::array<std::vector<double>, variables.size()> values;
  for (const SiteSeries& site : sites) {
    const Point& point = table_.sites[site.site_index].point;
    const Point centre = centre_of(site.cell, job.input.entry.row_order);
    numbers.push_back(static_cast<std::int32_t>(site.site_index) + 1);
    values[0].push_back(point.latitude);
    values[1].push_back(point.longitude);
    values[2].push_back(centre.latitude);
    values[3].push_back(centre.longitude);
    values[4].push_back(distance_km(point, centre));
  }
  file.put(number_, numbers);
  for (std::size_t i = 0; i < variables.size(); ++i) {
    file.put(variables[i], values[i]);
  }
}

}  // namespace veldmark::extract
