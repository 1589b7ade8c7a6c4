// From a time coordinate to months.
//
// Nothing here touches a file.

#ifndef VELDMARK_TERSIFY_NETCDF_TIME_H_
#define VELDMARK_TERSIFY_NETCDF_TIME_H_

#include <chrono>
#include <cstdint>
#include <span>
#include <string>

namespace veldmark::tersify {

// Time as days since a moment.
class DaysSince {
 public:
  // Reads the attributes of a time coordinate.
  //
  //   units       "days since 1900-1-1", with or without a time of day, in UTC
  //   calendar    standard or gregorian, which are Julian before 15 October 1582, or
  //               proleptic_gregorian; "" means standard
  //
  // Throws NetcdfFault for anything else.
  DaysSince(const std::string& units, const std::string& calendar);

  // Returns the month that holds the moment of `days`, in the Gregorian calendar.
  // Throws NetcdfFault when it is no month from 1600 to 9999.
  [[nodiscard]] std::chrono::year_month month_of(double days) const;

 private:
  std::chrono::sys_days day_{};
  double fraction_ = 0;  // of the day, 0 at midnight
};

// The years of a file: `years` whole ones from January of `first` on.
struct FoundYears {
  std::int32_t first = 0;
  std::int32_t years = 0;

  [[nodiscard]] std::int32_t last() const { return first + years - 1; }
};

// Finds the years of a time coordinate. Throws NetcdfFault when the times are not one
// in each month, one month after another, of whole years.
FoundYears find_years(std::span<const double> times, const DaysSince& since);

// Returns "July 1905" for the month of that index, from 0, in a file.
std::string name_of_month(std::int32_t first_year, std::size_t month);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_NETCDF_TIME_H_
