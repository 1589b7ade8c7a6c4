// Replaces netcdf_output.cc in a build without the netCDF library.

#include "extract/netcdf_output.h"
#include "util/failure.h"

namespace veldmark::extract {

void load_netcdf() {
  throw Failure("this program was built without netCDF; csv and tsf can be written");
}

// The others are never called: load_netcdf() throws.

void write_netcdf_grid(const Job& /*job*/, const BoxCells& /*box*/,
                       const SeriesBlock& /*block*/) {}

void write_netcdf_sites(const Job& /*job*/, const SiteTable& /*table*/,
                        std::span<const SiteSeries> /*sites*/) {}

void write_netcdf_area_mean(const Job& /*job*/, const BoxCells& /*box*/,
                            const AreaMean& /*mean*/) {}

void write_netcdf_grid_tests(const Job& /*job*/, const BoxCells& /*box*/,
                             const SeriesBlock& /*block*/) {}

void write_netcdf_site_tests(const Job& /*job*/, const SiteTable& /*table*/,
                             std::span<const SiteSeries> /*sites*/) {}

}  // namespace veldmark::extract
