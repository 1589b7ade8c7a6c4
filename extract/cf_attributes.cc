#include "extract/cf_attributes.h"
#include "grid/grid_layout.h"

#include <algorithm>
#include <array>
#include <chrono>

namespace veldmark::extract {
namespace {

struct Row {
  std::string_view short_name;
  CfAttributes attributes;
};

constexpr std::string_view kMean = "time: mean";
constexpr std::string_view kSum = "time: sum";

constexpr std::array kRows{
    Row{"pre", {"mm", "lwe_thickness_of_precipitation_amount", kSum}},
    Row{"tmp", {"degC", "air_temperature", kMean}},
    Row{"dtr", {"degC", "", "time: range within days time: mean over days"}},
    Row{"tmn",
        {"degC", "air_temperature", "time: minimum within days time: mean over days"}},
    Row{"tmx",
        {"degC", "air_temperature", "time: maximum within days time: mean over days"}},
    Row{"vap", {"hPa", "water_vapor_partial_pressure_in_air", kMean}},
    Row{"pet", {"mm day-1", "", kMean}},
    Row{"cld", {"percent", "cloud_area_fraction", kMean}},
    Row{"frs", {"day", "", kSum}},
    Row{"wet", {"day", "", kSum}},
    Row{"scPDSI", {"1", "", ""}},
};

static_assert(kRows.size() == kVariableCount);

double days_until(std::int32_t year, std::int32_t month) {
  using namespace std::chrono;  // NOLINT
  const sys_days day{std::chrono::year(year) / (month + 1) / 1};
  return static_cast<double>((day - sys_days{std::chrono::year(1900) / 1 / 1}).count());
}

}  // namespace

CfAttributes cf_attributes(const VariableEntry& entry) {
  const auto* row = std::find_if(kRows.begin(), kRows.end(), [&](const Row& candidate) {
    return candidate.short_name == entry.short_name;
  });
  return row == kRows.end() ? CfAttributes{} : row->attributes;
}

MonthTime month_time(std::int32_t first_year, std::int32_t month) {
  const double begin =
      days_until(first_year + month / kMonthsPerYear, month % kMonthsPerYear);
  const std::int32_t next = month + 1;
  const double end =
      days_until(first_year + next / kMonthsPerYear, next % kMonthsPerYear);
  const auto half = static_cast<std::int32_t>(end - begin) / 2;
  return {.begin = begin, .middle = begin + half, .end = end};
}

}  // namespace veldmark::extract
