#include "extract/cf_attributes.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "catalogue/variable_name.h"
#include "extract/citation.h"

namespace veldmark::extract {
namespace {

TEST(CfAttributes, DescribeEveryVariable) {
  const std::vector<std::array<std::string, 4>> expected{
      {"pre", "mm", "lwe_thickness_of_precipitation_amount", "time: sum"},
      {"tmp", "degC", "air_temperature", "time: mean"},
      {"dtr", "degC", "", "time: range within days time: mean over days"},
      {"tmn", "degC", "air_temperature",
       "time: minimum within days time: mean over days"},
      {"tmx", "degC", "air_temperature",
       "time: maximum within days time: mean over days"},
      {"vap", "hPa", "water_vapor_partial_pressure_in_air", "time: mean"},
      {"pet", "mm day-1", "", "time: mean"},
      {"cld", "percent", "cloud_area_fraction", "time: mean"},
      {"frs", "day", "", "time: sum"},
      {"wet", "day", "", "time: sum"},
      {"scPDSI", "1", "", ""},
  };
  ASSERT_EQ(expected.size(), kVariableCount);
  for (const auto& [name, units, standard_name, cell_methods] : expected) {
    const CfAttributes found = cf_attributes(*find_by_short_name(name));
    EXPECT_EQ(found.units, units) << name;
    EXPECT_EQ(found.standard_name, standard_name) << name;
    EXPECT_EQ(found.cell_methods, cell_methods) << name;
  }
}

// Days that Python's datetime counts from 1900-01-01.
TEST(MonthTime, IsInDaysSince1900) {
  struct Known {
    std::int32_t first_year;
    std::int32_t month;
    MonthTime time;
  };
  const std::vector<Known> known{
      {1901, 0, {365, 380, 396}},
      {1901, 1, {396, 410, 424}},
      {1901, 11, {699, 714, 730}},
      {1901, 37, {1491, 1505, 1520}},  // February 1904
      {1904, 1, {1491, 1505, 1520}},
      {1901, 1189, {36555, 36569, 36584}},
      {2024, 11, {45625, 45640, 45656}},
      {1900, 1, {31, 45, 59}},
      {1899, 11, {-31, -16, 0}},
      {1583, 0, {-115782, -115767, -115751}},
  };
  for (const Known& month : known) {
    const MonthTime found = month_time(month.first_year, month.month);
    EXPECT_EQ(found.begin, month.time.begin);
    EXPECT_EQ(found.middle, month.time.middle);
    EXPECT_EQ(found.end, month.time.end);
  }
}

TEST(CitationText, IsOneLineWithoutIntroduction) {
  for (const VariableEntry& entry : VariableCatalogue) {
    const std::string text = citation_text(entry);
    EXPECT_EQ(text.find('\n'), std::string::npos);
    EXPECT_EQ(text.find("  "), std::string::npos) << text;
    EXPECT_EQ(text.find("citation"), std::string::npos) << text;
    EXPECT_FALSE(text.starts_with(' ') || text.ends_with(' ')) << text;
  }
}

}  // namespace
}  // namespace veldmark::extract
