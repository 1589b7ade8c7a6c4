// The attributes of each variable under the CF conventions for netCDF files.

#ifndef VELDMARK_EXTRACT_CF_ATTRIBUTES_H_
#define VELDMARK_EXTRACT_CF_ATTRIBUTES_H_

#include <cstdint>
#include <string_view>

#include "catalogue/variable_catalogue.h"

namespace veldmark::extract {

// An empty text means that the attribute is left out.
struct CfAttributes {
  std::string_view units;
  std::string_view standard_name;
  std::string_view cell_methods;
};

// Returns the attributes of a variable. The standard_name is empty if CF has none that
// fits: those for frost and wet days need a threshold, and that for evapotranspiration
// is a mass flux.
CfAttributes cf_attributes(const VariableEntry& entry);

// The time of a month, in days since 1900-01-01.
struct MonthTime {
  double begin;
  double middle;  // a whole day, as in the published files: 380 for January 1901
  double end;
};

// Returns the time of `month` (0 is January) counted from January of `first_year`.
MonthTime month_time(std::int32_t first_year, std::int32_t month);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_CF_ATTRIBUTES_H_
