// Writes the mean over an area as a time series in a netCDF file.

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "catalogue/variable_name.h"
#include "extract/cf_attributes.h"
#include "extract/netcdf_axes.h"
#include "extract/netcdf_common.h"
#include "extract/netcdf_file.h"
#include "extract/netcdf_output.h"
#include "extract/output_names.h"

namespace veldmark::extract {
namespace {

// Defines the variable of the mean, as a double: a mean is not a stored integer.
int add_mean(NetcdfFile& file, const Job& job, int time) {
  const VariableEntry& entry = job.input.entry;
  const CfAttributes attributes = cf_attributes(entry);
  const int variable =
      file.add_variable(entry.short_name, NetcdfFile::Type::kDouble, std::array{time});
  file.set_fill_value(variable, NetcdfFile::kFillDouble);
  file.compress(variable, job.options.deflate);
  file.add_text(variable, "standard_name", attributes.standard_name);
  file.add_text(variable, "long_name", "area mean of " + std::string(entry.long_name));
  file.add_text(variable, "units", attributes.units);
  file.add_text(variable, "cell_methods",
                std::string(attributes.cell_methods) +
                    (attributes.cell_methods.empty() ? "" : " ") + "area: mean");
  file.add_text(variable, "comment",
                "weighted with the cosine of latitude, over the cells that have data "
                "in the month");
  file.add_text(variable, "coordinates", "lat lon");
  file.add_text(variable, "ancillary_variables", "cells");
  return variable;
}

int add_cells(NetcdfFile& file, const Job& job, int time) {
  const int variable =
      file.add_variable("cells", NetcdfFile::Type::kInt, std::array{time});
  file.compress(variable, job.options.deflate);
  file.add_text(variable, "long_name", "number of cells with data");
  file.add_text(variable, "units", "1");
  file.add_text(variable, "coordinates", "lat lon");
  return variable;
}

}  // namespace

void write_netcdf_area_mean(const Job& job, const BoxCells& box, const AreaMean& mean) {
  std::vector<double> values;
  for (std::size_t month = 0; month < mean.month_count(); ++month) {
    const std::optional<double> value = mean.mean(month, decimals_of(job.input.entry));
    values.push_back(value.value_or(NetcdfFile::kFillDouble));
  }
  NetcdfFile file(*job.options.output, if_output_exists(job.options));
  const int bounds = file.add_dimension("bnds", 2);
  const NetcdfTime time(file, job.years, bounds);
  const NetcdfExtent lat(file, "lat", latitudes_of(job, box), bounds);
  const NetcdfExtent lon(file, "lon", longitudes_of(box), bounds);
  const int mean_variable = add_mean(file, job, time.dimension());
  const int cells_variable = add_cells(file, job, time.dimension());
  describe_file(file, job);
  time.put(file);
  lat.put(file);
  lon.put(file);
  file.put(mean_variable, values);
  file.put(cells_variable, mean.cells());
  file.complete();
}

}  // namespace veldmark::extract
