// Series as netCDF-4 after the CF conventions: a grid, or the series of sites.

#ifndef VELDMARK_EXTRACT_NETCDF_OUTPUT_H_
#define VELDMARK_EXTRACT_NETCDF_OUTPUT_H_

#include <span>

#include "extract/box_job.h"
#include "extract/job.h"
#include "extract/sites_file.h"
#include "extract/sites_job.h"

namespace veldmark::extract {

// Loads the netCDF library. Throws Failure when the system doesn't find it, or the
// program was built without.
void load_netcdf();

// Writes the cells of a box as a grid: latitudes ascending, longitudes running on
// across the 180 degree meridian (179.75, 180.25), cells without data filled with the
// missing code. Throws Failure.
void write_netcdf_grid(const Job& job, const BoxCells& box, const SeriesBlock& block);

// Writes the series of sites. Throws Failure.
void write_netcdf_sites(const Job& job, const SiteTable& table,
                        std::span<const SiteSeries> sites);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_NETCDF_OUTPUT_H_
