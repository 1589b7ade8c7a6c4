// Replaces netcdf_output.cc in a build without the netCDF library.

#include "extract/netcdf_output.h"
#include "util/failure.h"

namespace veldmark::extract {
namespace {

[[noreturn]] void fail() {
  throw Failure("this program was built without netCDF; csv and tsf can be written");
}

}  // namespace

void load_netcdf() { fail(); }

void write_netcdf_grid(const Job& /*job*/, const BoxCells& /*box*/,
                       const SeriesBlock& /*block*/) {
  fail();
}

void write_netcdf_sites(const Job& /*job*/, const SiteTable& /*table*/,
                        std::span<const SiteSeries> /*sites*/) {
  fail();
}

void write_netcdf_area_mean(const Job& /*job*/, const BoxCells& /*box*/,
                            const AreaMean& /*mean*/) {
  fail();
}

void write_netcdf_grid_tests(const Job& /*job*/, const BoxCells& /*box*/,
                             const SeriesBlock& /*block*/) {
  fail();
}

void write_netcdf_site_tests(const Job& /*job*/, const SiteTable& /*table*/,
                             std::span<const SiteSeries> /*sites*/) {
  fail();
}

}  // namespace veldmark::extract
