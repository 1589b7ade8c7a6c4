// The months of a netCDF file's times. The numbers of days were computed with Python's
// cftime.

#include "tersify/netcdf_time.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "tersify/netcdf_fault.h"

namespace veldmark::tersify {
namespace {

using std::chrono::January;
using std::chrono::year;
using std::chrono::year_month;

constexpr year_month kJanuary1901 = year(1901) / January;

// 1 January 1901 is that many days after the moment of `units`.
void expect_days(const std::string& units, const std::string& calendar, double days) {
  const DaysSince since(units, calendar);
  EXPECT_EQ(since.month_of(days), kJanuary1901) << units;
  EXPECT_EQ(since.month_of(days - 0.01), kJanuary1901 - std::chrono::months(1))
      << units;
  EXPECT_EQ(since.month_of(days + 30.99), kJanuary1901) << units;
}

template <typename Action>
void expect_fault(const std::string& message, const Action& action) {
  try {
    action();
    ADD_FAILURE() << "no fault; expected: " << message;
  } catch (const NetcdfFault& fault) {
    EXPECT_EQ(fault.what(), message);
  }
}

void expect_units_refused(const std::string& units) {
  expect_fault("the units of time are '" + units +
                   "'; expected days since a date, as 1900-1-1, in UTC",
               [&] { DaysSince(units, ""); });
}

TEST(DaysSince, CountsFromAnyDate) {
  expect_days("days since 1900-1-1", "gregorian", 365);
  expect_days("days since 1901-01-01", "standard", 0);
  expect_days("days since 2000-02-29", "", -36218);
  expect_days("days since 1601-1-1", "proleptic_gregorian", 109572);
}

TEST(DaysSince, TheStandardCalendarIsJulianBefore1582) {
  expect_days("days since 1-1-1", "standard", 693962);
  expect_days("days since 1-1-1", "", 693962);
  expect_days("days since 1-1-1", "proleptic_gregorian", 693960);
  expect_days("days since 1500-3-1", "gregorian", 146393);
  expect_days("days since 1300-12-31", "standard", 219138);
  expect_days("days since 1582-10-4", "standard", 116226);
  expect_days("days since 1582-10-15", "standard", 116225);
  expect_units_refused("days since 1582-10-5");
  expect_units_refused("days since 1582-10-14");
}

TEST(DaysSince, ATimeOfDayCounts) {
  expect_days("days since 1900-12-31 12:00:00", "", 0.5);
  expect_days("Days Since 1900-12-31T18:00:00.0Z", "", 0.25);
  expect_days("day since 1900-12-31 06:00 UTC", "", 0.75);
  expect_days(" days  since 1901-1-1 00:00:00 +00:00 ", "", 0);
  const DaysSince half_a_minute_before("days since 1900-12-31 23:59:30", "");
  constexpr double kSecond = 1.0 / 86400;
  EXPECT_EQ(half_a_minute_before.month_of(30.01 * kSecond), kJanuary1901);
  EXPECT_EQ(half_a_minute_before.month_of(29.99 * kSecond),
            kJanuary1901 - std::chrono::months(1));
}

TEST(DaysSince, OtherUnitsAreRefused) {
  for (const char* units :
       {"", "days", "hours since 1900-1-1", "days since 1900", "days since 1900-1",
        "days since 1900-0-1", "days since 1900-1-32", "days since 1901-2-29",
        "days since 0-1-1", "days since -1-1-1", "days since 1900-1-1 24:00",
        "days since 1900-1-1 0:60", "days since 1900-1-1 0:0:60",
        "days since 1900-1-1 000:00", "days since 1900-1-1 0:005",
        "days since 1900-1-1 0:0:005", "days since 1900-1-1 0:0 +1:00",
        "days since 1900-1-1 x"}) {
    expect_units_refused(units);
  }
}

TEST(DaysSince, OverlongUnitsAreRefusedAndTruncatedInTheMessage) {
  expect_fault("the units of time are 'days since 1900-1-1" + std::string(41, ' ') +
                   "...'; expected days since a date, as 1900-1-1, in UTC",
               [] { DaysSince("days since 1900-1-1" + std::string(82, ' '), ""); });
  expect_days("days since 1900-1-1" + std::string(81, ' '), "", 365);
}

TEST(DaysSince, OtherCalendarsAreRefused) {
  for (const std::string calendar :
       {"noleap", "365_day", "julian", "Gregorian", "360_day"}) {
    expect_fault("the calendar of time is '" + calendar +
                     "'; expected standard, gregorian or proleptic_gregorian",
                 [&] { DaysSince("days since 1900-1-1", calendar); });
  }
}

TEST(DaysSince, TimesThatAreNoMonthsAreRefused) {
  const DaysSince since("days since 1900-1-1", "");
  expect_fault("a time is nan days; expected a month", [&] {
    static_cast<void>(since.month_of(std::numeric_limits<double>::quiet_NaN()));
  });
  expect_fault("a time is -inf days; expected a month", [&] {
    static_cast<void>(since.month_of(-std::numeric_limits<double>::infinity()));
  });
  expect_fault("a time is 4000000 days; expected a month",
               [&] { static_cast<void>(since.month_of(4e6)); });
  expect_fault("a time is in the year 1599; expected 1600 to 9999",
               [&] { static_cast<void>(since.month_of(-109573 - 0.5)); });
  EXPECT_EQ(since.month_of(-109573), year(1600) / January);
  EXPECT_EQ(since.month_of(2958463.5), year(9999) / std::chrono::December);
  expect_fault("a time is in the year 10000; expected 1600 to 9999",
               [&] { static_cast<void>(since.month_of(2958464)); });
}

// The middles of the months that published files hold.
std::vector<double> middles(int years) {
  std::vector<double> days;
  for (int month = 0; month < 12 * years; ++month) {
    const auto first = std::chrono::sys_days(
        (kJanuary1901 + std::chrono::months(month)) / std::chrono::day(15));
    days.push_back(static_cast<double>(
        (first - std::chrono::sys_days(year(1900) / January / 1)).count()));
  }
  return days;
}

const DaysSince kSince1900("days since 1900-1-1", "gregorian");

TEST(FindYears, CountsWholeYears) {
  const FoundYears found = find_years(middles(124), kSince1900);
  EXPECT_EQ(found.first, 1901);
  EXPECT_EQ(found.years, 124);
  EXPECT_EQ(found.last(), 2024);
  EXPECT_EQ(find_years(middles(1), DaysSince("days since 2020-1-1", "")).first, 2021);
}

TEST(FindYears, MonthsMustBeWholeYearsOneAfterAnother) {
  const auto expect = [](const std::string& message, std::vector<double> times) {
    expect_fault(message, [&] { find_years(times, kSince1900); });
  };
  expect("there are 0 months; expected 12 for each year", {});
  std::vector<double> times = middles(2);
  times.pop_back();
  expect("there are 23 months; expected 12 for each year", times);
  times = middles(2);
  times.erase(times.begin());
  times.push_back(times.back() + 31);
  expect("the first month is February 1901; expected a January", times);
  times = middles(2);
  times[13] = times[12];
  expect("time 14 is in January 1902; expected February 1902", times);
  times = middles(2);
  times[23] += 31;
  expect("time 24 is in January 1903; expected December 1902", times);
}

TEST(NameOfMonth, CountsFromTheFirstJanuary) {
  EXPECT_EQ(name_of_month(1901, 0), "January 1901");
  EXPECT_EQ(name_of_month(1901, 54), "July 1905");
  EXPECT_EQ(name_of_month(2021, 23), "December 2022");
}

}  // namespace
}  // namespace veldmark::tersify
