#include "extract/netcdf_axes.h"

#include <array>
#include <cstdint>
#include <string>
#include <utility>

#include "extract/netcdf_common.h"
#include "grid/grid_layout.h"

namespace veldmark::extract {
namespace {

constexpr double kHalfACell = kCellSize / 2;
constexpr double kCircle = 360;

// Defines the bounds of the coordinate `variable`. Returns the id of the new variable.
int add_bounds(NetcdfFile& file, std::string_view name, int variable,
               std::span<const int> dimensions) {
  const std::string bounds_name = std::string(name) + "_bnds";
  file.add_text(variable, "bounds", bounds_name);
  return file.add_variable(bounds_name, NetcdfFile::Type::kDouble, dimensions);
}

}  // namespace

std::vector<double> latitudes_of(const Job& job, const BoxCells& box) {
  std::vector<double> latitudes;
  for (const std::int32_t row : box.rows_from_south) {
    latitudes.push_back(centre_of({row, 1}, job.input.entry.row_order).latitude);
  }
  return latitudes;
}

std::vector<double> longitudes_of(const BoxCells& box) {
  std::vector<double> longitudes;
  for (const std::int32_t column : box.columns_from_west) {
    double longitude = centre_of({1, column}, RowOrder::kSouthFirst).longitude;
    if (column < box.columns_from_west.front()) {
      longitude += kCircle;
    }
    longitudes.push_back(longitude);
  }
  return longitudes;
}

NetcdfAxis::NetcdfAxis(NetcdfFile& file, std::string_view name,
                       std::vector<double> centres, int bounds)
    : centres_(std::move(centres)),
      dimension_(file.add_dimension(name, centres_.size())),
      variable_(add_degrees(file, name, std::array{dimension_})),
      bounds_(add_bounds(file, name, variable_, std::array{dimension_, bounds})) {
  file.add_text(variable_, "axis", name == "lat" ? "Y" : "X");
}

void NetcdfAxis::put(NetcdfFile& file) const {
  std::vector<double> bounds;
  for (const double centre : centres_) {
    bounds.insert(bounds.end(), {centre - kHalfACell, centre + kHalfACell});
  }
  file.put(variable_, centres_);
  file.put(bounds_, bounds);
}

NetcdfExtent::NetcdfExtent(NetcdfFile& file, std::string_view name,
                           const std::vector<double>& centres, int bounds)
    : low_(centres.front() - kHalfACell),
      high_(centres.back() + kHalfACell),
      variable_(add_degrees(file, name, {})),
      bounds_(add_bounds(file, name, variable_, std::array{bounds})) {}

void NetcdfExtent::put(NetcdfFile& file) const {
  file.put(variable_, std::array{(low_ + high_) / 2});
  file.put(bounds_, std::array{low_, high_});
}

}  // namespace veldmark::extract
