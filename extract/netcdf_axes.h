// The latitudes and longitudes of a grid as netCDF coordinates.

#ifndef VELDMARK_EXTRACT_NETCDF_AXES_H_
#define VELDMARK_EXTRACT_NETCDF_AXES_H_

#include <cstddef>
#include <string_view>
#include <vector>

#include "extract/box_cells.h"
#include "extract/job.h"
#include "extract/netcdf_file.h"

namespace veldmark::extract {

// Returns the centres of the rows of `box`, ascending.
std::vector<double> latitudes_of(const Job& job, const BoxCells& box);

// Returns the centres of the columns of `box`, ascending: 180.25 follows 179.75.
std::vector<double> longitudes_of(const BoxCells& box);

// A latitude ("lat") or longitude ("lon") of a grid as a dimension, with its coordinate
// and bounds.
class NetcdfAxis {
 public:
  // Defines the variables. `bounds` is the dimension of the two ends of an interval.
  NetcdfAxis(NetcdfFile& file, std::string_view name, std::vector<double> centres,
             int bounds);

  [[nodiscard]] int dimension() const { return dimension_; }
  [[nodiscard]] std::size_t size() const { return centres_.size(); }

  // Writes the values. Call after the last definition.
  void put(NetcdfFile& file) const;

 private:
  std::vector<double> centres_;
  int dimension_;
  int variable_;
  int bounds_;
};

// The whole extent of an area in one direction, as a scalar coordinate with its bounds.
class NetcdfExtent {
 public:
  // Defines the variables for cells with these centres (ascending).
  NetcdfExtent(NetcdfFile& file, std::string_view name,
               const std::vector<double>& centres, int bounds);

  // Writes the values. Call after the last definition.
  void put(NetcdfFile& file) const;

 private:
  double low_;
  double high_;
  int variable_;
  int bounds_;
};

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_NETCDF_AXES_H_
