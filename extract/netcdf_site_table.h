// The table of sites and their cells as netCDF variables.

#ifndef VELDMARK_EXTRACT_NETCDF_SITE_TABLE_H_
#define VELDMARK_EXTRACT_NETCDF_SITE_TABLE_H_

#include <span>
#include <string_view>
#include <vector>

#include "extract/job.h"
#include "extract/netcdf_file.h"
#include "extract/site_series.h"
#include "extract/sites_file.h"

namespace veldmark::extract {

// Variables along the dimension of the sites: the number of the site in its table, its
// place, its cell and the distance to it, and each column of the table as text.
class NetcdfSiteTable {
 public:
  // Defines the variables. Requires that `table` outlives this object.
  NetcdfSiteTable(NetcdfFile& file, const SiteTable& table, int sites);

  // The "coordinates" attribute of the variables of the sites.
  static constexpr std::string_view kCoordinates = "lat lon";

  // The variable that identifies the sites.
  [[nodiscard]] int number() const { return number_; }

  // Writes the values. Call after the last definition.
  void put(NetcdfFile& file, const Job& job, std::span<const SiteSeries> sites) const;

 private:
  void put_places(NetcdfFile& file, const Job& job,
                  std::span<const SiteSeries> sites) const;

  const SiteTable& table_;
  int number_;
  int lat_;
  int lon_;
  int cell_lat_;
  int cell_lon_;
  int distance_;
  std::vector<int> columns_;
};

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_NETCDF_SITE_TABLE_H_
