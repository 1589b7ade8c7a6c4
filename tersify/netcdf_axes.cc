#include "tersify/netcdf_axes.h"

#include <cmath>
#include <cstdint>
#include <string>

#include "tersify/netcdf_fault.h"
#include "tersify/netcdf_number.h"

namespace veldmark::tersify {
namespace {

constexpr double kNorthernmostCentre = -double{kSouthernmostCentre};
constexpr double kFirstEastOfGreenwich = 0.25;

// Cell centres are exact in binary, but some programs compute them inexactly.
bool is_near(double found, double expected) {
  constexpr double kNear = 0.001;
  return std::abs(found - expected) < kNear;
}

// Throws NetcdfFault unless the coordinates are the cell centres from `first` on,
// `step` apart. Messages call them `what`.
void expect_centres(std::span<const double> found, const std::string& what,
                    double first, double step) {
  for (std::size_t i = 0; i < found.size(); ++i) {
    const double expected = first + step * static_cast<double>(i);
    if (!is_near(found[i], expected)) {
      throw NetcdfFault(what + " " + std::to_string(i + 1) + " is " +
                        number_text(found[i]) + "; expected " + number_text(expected) +
                        ", half a degree from the one before");
    }
  }
}

void expect_count(std::span<const double> found, const std::string& what,
                  std::int32_t expected) {
  if (found.size() != static_cast<std::size_t>(expected)) {
    throw NetcdfFault("there are " + std::to_string(found.size()) + " " + what +
                      "s; expected " + std::to_string(expected) +
                      ", half a degree apart");
  }
}

[[noreturn]] void refuse_first(const std::string& what, double found, double expected,
                               double other) {
  throw NetcdfFault("the first " + what + " is " + number_text(found) + "; expected " +
                    number_text(expected) + " or " + number_text(other));
}

}  // namespace

RowOrder find_row_order(std::span<const double> latitudes) {
  const std::string what = "latitude";
  expect_count(latitudes, what, kGridRows);
  const double first = latitudes.front();
  if (is_near(first, kSouthernmostCentre)) {
    expect_centres(latitudes, what, kSouthernmostCentre, kCellSize);
    return RowOrder::kSouthFirst;
  }
  if (!is_near(first, kNorthernmostCentre)) {
    refuse_first(what, first, kSouthernmostCentre, kNorthernmostCentre);
  }
  expect_centres(latitudes, what, kNorthernmostCentre, -kCellSize);
  return RowOrder::kNorthFirst;
}

std::size_t find_first_column(std::span<const double> longitudes) {
  const std::string what = "longitude";
  expect_count(longitudes, what, kGridColumns);
  const double first = longitudes.front();
  if (is_near(first, kWesternmostCentre)) {
    expect_centres(longitudes, what, kWesternmostCentre, kCellSize);
    return 0;
  }
  if (!is_near(first, kFirstEastOfGreenwich)) {
    refuse_first(what, first, kWesternmostCentre, kFirstEastOfGreenwich);
  }
  expect_centres(longitudes, what, kFirstEastOfGreenwich, kCellSize);
  return kGridColumns / 2;
}

}  // namespace veldmark::tersify
