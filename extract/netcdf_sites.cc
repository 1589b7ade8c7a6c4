#include <array>

#include "extract/netcdf_common.h"
#include "extract/netcdf_file.h"
#include "extract/netcdf_output.h"
#include "extract/netcdf_site_table.h"
#include "extract/output_names.h"

namespace veldmark::extract {

void write_netcdf_sites(const Job& job, const SiteTable& table,
                        std::span<const SiteSeries> sites) {
  NetcdfFile file(*job.options.output, if_output_exists(job.options));
  const int bounds = file.add_dimension("bnds", 2);
  const NetcdfTime time(file, job.years, bounds);
  const int site = file.add_dimension("site", sites.size());
  const NetcdfSiteTable columns(file, table, site);
  file.add_text(columns.number(), "cf_role", "timeseries_id");
  const std::size_t months = sites.front().series.size();
  const int values = add_values(file, job, std::array{site, time.dimension()},
                                std::array{std::size_t{1}, months});
  file.add_text(values, "coordinates", NetcdfSiteTable::kCoordinates);
  file.add_text(NetcdfFile::kGlobal, "featureType", "timeSeries");
  describe_file(file, job);
  time.put(file);
  columns.put(file, job, sites);
  for (std::size_t i = 0; i < sites.size(); ++i) {
    file.put(values, std::array{i, std::size_t{0}}, std::array{std::size_t{1}, months},
             sites[i].series);
  }
  file.complete();
}

}  // namespace veldmark::extract
