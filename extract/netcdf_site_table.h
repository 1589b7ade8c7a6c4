// The table of sites, and the cells that stand for them, as netCDF.

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

// Variables along the dimension of the sites: the number of the site in its table,
// where it is, its cell and how far that is, and each column of the table as text.
class NetcdfSiteTable {
 public:
  // Defines them. `table` must outlive this.
  NetcdfSiteTable(NetcdfFile& file, const SiteTable& table, int sites);

  // What the variables of the sites name as their coordinates.
  static constexpr std::string_view kCoordinates = "lat lon";

  // The variable that tells the sites apart.
  [[nodiscard]] int number() const { return number_; }

  // Writes their values, after the definitions.
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
