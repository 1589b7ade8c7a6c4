#include "tersify/netcdf_time.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <optional>
#include <regex>

#include "grid/grid_layout.h"
#include "tersify/grid_shape.h"
#include "tersify/netcdf_fault.h"
#include "tersify/netcdf_number.h"
#include "util/in_quotes.h"

namespace veldmark::tersify {
namespace {

using std::chrono::day;
using std::chrono::days;
using std::chrono::month;
using std::chrono::sys_days;
using std::chrono::year;
using std::chrono::year_month;
using std::chrono::year_month_day;

constexpr const char* kExpectedUnits =
    "expected days since a date, as 1900-1-1, in UTC";

[[noreturn]] void refuse_units(const std::string& units) {
  throw NetcdfFault("the units of time are " + in_quotes(units, kShownOfText) + "; " +
                    kExpectedUnits);
}

// Parses the units into year, month, day, hour, minute and second. Returns nullopt if
// they have another form.
using Parts = std::array<int, 6>;

std::optional<Parts> parts_of(const std::string& units) {
  static const std::regex kUnits(
      R"(\s*days?\s+since\s+(\d{1,4})-(\d{1,2})-(\d{1,2}))"
      R"((?:[T\s]\s*(\d{1,2})(?::(\d{1,2})(?::(\d{1,2})(?:\.\d*)?)?)?)?)"
      R"(\s*(?:Z|UTC|GMT|[+-]0{1,2}(?::?00)?)?\s*)",
      std::regex::icase);
  constexpr std::size_t kLongest = 100;  // limits std::regex's recursion
  std::smatch found;
  if (units.size() > kLongest || !std::regex_match(units, found, kUnits)) {
    return std::nullopt;
  }
  Parts parts{};
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const std::string text = found[i + 1].str();
    parts[i] = text.empty() ? 0 : std::stoi(text);
  }
  return parts;
}

// Returns the day of a date in the Julian calendar, counted from 1 January 1970.
sys_days julian_day(int y, int m, int d) {
  // The year begins in March here, so that a leap day is the last day of the year.
  constexpr int kMonths = 12;
  constexpr int kEarlier = 4800;        // added, so that no year is negative
  constexpr int kDayOfEarlier = 32083;  // 1 March of that year, as a Julian day number
  constexpr int kDayOf1970 = 2440588;   // 1 January 1970, as a Julian day number
  const int years_less = (14 - m) / kMonths;
  const int years = y + kEarlier - years_less;
  const int months = m + kMonths * years_less - 3;
  return sys_days(days(d + (153 * months + 2) / 5 + 365 * years + years / 4 -
                       kDayOfEarlier - kDayOf1970));
}

// Returns the day of a date in the standard calendar; nullopt for one of the ten days
// that it skips in October 1582.
std::optional<sys_days> standard_calendar_day(const year_month_day& date, int y, int m,
                                              int d) {
  constexpr year_month_day kLastJulian = year(1582) / month(10) / day(4);
  constexpr year_month_day kFirstGregorian = year(1582) / month(10) / day(15);
  if (date <= kLastJulian) {
    return julian_day(y, m, d);
  }
  if (date < kFirstGregorian) {
    return std::nullopt;
  }
  return sys_days(date);
}

bool is_time_of_day(const Parts& parts) {
  return parts[3] < 24 && parts[4] < 60 && parts[5] < 60;
}

std::string month_text(const year_month& month) {
  const auto number = static_cast<unsigned>(month.month());
  return month_name(static_cast<std::int32_t>(number)) + " " +
         std::to_string(static_cast<int>(month.year()));
}

}  // namespace

DaysSince::DaysSince(const std::string& units, const std::string& calendar) {
  const bool proleptic = calendar == "proleptic_gregorian";
  if (!proleptic && !calendar.empty() && calendar != "standard" &&
      calendar != "gregorian") {
    throw NetcdfFault("the calendar of time is " + in_quotes(calendar, kShownOfText) +
                      "; expected standard, gregorian or proleptic_gregorian");
  }
  const std::optional<Parts> parts = parts_of(units);
  if (!parts || !is_time_of_day(*parts)) {
    refuse_units(units);
  }
  const auto [y, m, d, hours, minutes, seconds] = *parts;
  const year_month_day date =
      year(y) / month(static_cast<unsigned>(m)) / day(static_cast<unsigned>(d));
  // Also rejects a 29 February that exists only in the Julian calendar.
  if (y == 0 || !date.ok()) {
    refuse_units(units);
  }
  const std::optional<sys_days> found =
      proleptic ? sys_days(date) : standard_calendar_day(date, y, m, d);
  if (!found) {
    refuse_units(units);
  }
  day_ = *found;
  fraction_ = (hours * 3600 + minutes * 60 + seconds) / 86400.0;
}

year_month DaysSince::month_of(double days) const {
  constexpr double kMaxDays = 4e6;  // more than ten thousand years
  if (!(std::abs(days) < kMaxDays)) {
    throw NetcdfFault("a time is " + number_text(days) + " days; expected a month");
  }
  const auto whole = static_cast<int>(std::floor(days + fraction_));
  const year_month_day date(day_ + std::chrono::days(whole));
  if (date.year() < year(1600) || date.year() > year(9999)) {
    throw NetcdfFault("a time is in the year " +
                      std::to_string(static_cast<int>(date.year())) +
                      "; expected 1600 to 9999");
  }
  return date.year() / date.month();
}

FoundYears find_years(std::span<const double> times, const DaysSince& since) {
  const auto months = static_cast<std::ptrdiff_t>(times.size());
  if (months == 0 || months % kMonthsPerYear != 0) {
    throw NetcdfFault("there are " + std::to_string(months) +
                      " months; expected 12 for each year");
  }
  const year_month first = since.month_of(times.front());
  if (first.month() != std::chrono::January) {
    throw NetcdfFault("the first month is " + month_text(first) +
                      "; expected a January");
  }
  int number = 1;
  year_month expected = first;
  for (const double time : times) {
    const year_month found = since.month_of(time);
    if (found != expected) {
      throw NetcdfFault("time " + std::to_string(number) + " is in " +
                        month_text(found) + "; expected " + month_text(expected));
    }
    ++number;
    expected += std::chrono::months(1);
  }
  return {.first = static_cast<int>(first.year()),
          .years = static_cast<std::int32_t>(months / kMonthsPerYear)};
}

std::string name_of_month(std::int32_t first_year, std::size_t month) {
  const year_month first = year(first_year) / std::chrono::January;
  return month_text(first + std::chrono::months(month));
}

}  // namespace veldmark::tersify
