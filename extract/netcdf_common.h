// What the netCDF output of grids and of sites shares: the time, the variable, and the
// description of the file.

#ifndef VELDMARK_EXTRACT_NETCDF_COMMON_H_
#define VELDMARK_EXTRACT_NETCDF_COMMON_H_

#include <cstdint>
#include <span>

#include "extract/job.h"
#include "extract/netcdf_file.h"

namespace veldmark::extract {

// The months of a job as a dimension with its coordinate and bounds.
class NetcdfTime {
 public:
  // Defines the variables. `bounds` is the dimension of the two ends of an interval.
  NetcdfTime(NetcdfFile& file, const Years& years, int bounds);

  [[nodiscard]] int dimension() const { return dimension_; }

  // Writes the values. Call after the last definition.
  void put(NetcdfFile& file) const;

 private:
  Years years_;
  int dimension_;
  int middles_;
  int bounds_;
};

// Defines a coordinate in degrees: "lat" or "lon", or "cell_lat" or "cell_lon" if those
// hold the place of a site. Returns its id.
int add_degrees(NetcdfFile& file, std::string_view name,
                std::span<const int> dimensions);

// Defines the variable of the job, in stored integers with the factor to physical
// units. Returns its id.
int add_values(NetcdfFile& file, const Job& job, std::span<const int> dimensions,
               std::span<const std::size_t> chunks);

// Writes the global attributes.
void describe_file(NetcdfFile& file, const Job& job);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_NETCDF_COMMON_H_
