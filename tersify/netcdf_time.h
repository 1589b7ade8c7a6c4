// Converts a time coordinate to months. Does no file I/O.

#ifndef VELDMARK_TERSIFY_NETCDF_TIME_H_
#define VELDMARK_TERSIFY_NETCDF_TIME_H_

#include <chrono>
#include <cstdint>
#include <span>
#include <string>

namespace veldmark::tersify {

// A time unit "days since" a reference date.
class DaysSince {
 public:
  // Parses the attributes of a time coordinate.
  //
  //   units       "days since 1900-1-1", optionally with a time of day, in UTC
  //   calendar    standard or gregorian (Julian before 15 October 1582), or
  //               proleptic_gregorian; "" means standard
  //
  // Throws NetcdfFault for anything else.
  DaysSince(const std::string& units, const std::string& calendar);

  // Returns the month of a time coordinate, in the Gregorian calendar. Throws
  // NetcdfFault unless it is in the years 1600 to 9999.
  [[nodiscard]] std::chrono::year_month month_of(double days) const;

 private:
  std::chrono::sys_days day_{};
  double fraction_ = 0;  // of the day since midnight
};

// The years of a file: `years` whole years, from January of the year `first` on.
struct FoundYears {
  std::int32_t first = 0;
  std::int32_t years = 0;

  [[nodiscard]] std::int32_t last() const { return first + years - 1; }
};

// Returns the years of a time coordinate. Throws NetcdfFault unless the times lie in
// consecutive months, one in each, and cover whole years.
FoundYears find_years(std::span<const double> times, const DaysSince& since);

// Returns the name of a month, "July 1905".
//
//   month    index in the file, counted from 0
std::string name_of_month(std::int32_t first_year, std::size_t month);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_NETCDF_TIME_H_
