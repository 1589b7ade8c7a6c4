// Writes netCDF-4 with the CF conventions: series, area means and variance tests, of a
// grid or of sites.

#ifndef VELDMARK_EXTRACT_NETCDF_OUTPUT_H_
#define VELDMARK_EXTRACT_NETCDF_OUTPUT_H_

#include <span>

#include "extract/area_mean.h"
#include "extract/box_cells.h"
#include "extract/job.h"
#include "extract/site_series.h"
#include "extract/sites_file.h"

namespace veldmark::extract {

// Loads the netCDF library. Throws Failure if it can't be loaded, or if the program was
// built without it.
void load_netcdf();

// Writes the cells of a box as a grid: latitudes ascending, longitudes ascending also
// across the 180 degree meridian (179.75, 180.25). Cells without data hold the missing
// code. Throws Failure.
void write_netcdf_grid(const Job& job, const BoxCells& box, const SeriesBlock& block);

// Writes the series of sites. Throws Failure.
void write_netcdf_sites(const Job& job, const SiteTable& table,
                        std::span<const SiteSeries> sites);

// Writes, for each month, the mean over the cells of a box and the number of cells with
// data. The mean is not rounded. Throws Failure.
void write_netcdf_area_mean(const Job& job, const BoxCells& box, const AreaMean& mean);

// Writes the variance test of each cell of a box, as maps. Throws Failure.
void write_netcdf_grid_tests(const Job& job, const BoxCells& box,
                             const SeriesBlock& block);

// Writes the variance test of each site. Throws Failure.
void write_netcdf_site_tests(const Job& job, const SiteTable& table,
                             std::span<const SiteSeries> sites);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_NETCDF_OUTPUT_H_
