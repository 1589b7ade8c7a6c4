#include "catalogue/variable_catalogue.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "support/temporary_folder.h"

namespace veldmark {
namespace {

using testing::TemporaryFolder;
using testing::write_file;

TEST(VariableCatalogue, IsFoundByMenuNumber) {
  for (std::int32_t number = 1; number <= 11; ++number) {
    ASSERT_NE(find_variable(number), nullptr);
    EXPECT_EQ(find_variable(number)->menu_number, number);
  }
  for (const std::int32_t number : {-9, -1, 0, 12, 99}) {
    EXPECT_EQ(find_variable(number), nullptr) << number;
  }
}

TEST(VariableCatalogue, OfTheDroughtIndexDiffersFromTheOthers) {
  for (const VariableEntry& entry : VariableCatalogue) {
    const bool drought = entry.menu_number == 11;
    EXPECT_EQ(entry.MissingCode, drought ? -9999 : -999);
    EXPECT_EQ(entry.row_order, drought ? RowOrder::kNorthFirst : RowOrder::kSouthFirst);
    EXPECT_EQ(entry.min_lon_test, drought ? MinLonTest::kNone : MinLonTest::kInRange);
    EXPECT_EQ(entry.years.FYOD, 1901);
    EXPECT_EQ(entry.years.LYOD, 2016);
    EXPECT_EQ(entry.SampleScale,
              entry.menu_number == 9 ? std::optional(0.01F) : std::nullopt);
  }
}

// Tenths, except for frost days, wet days and the drought index, which are hundredths.
TEST(VariableCatalogue, HasTheDivisorOfStoredValues) {
  std::string hundredths;
  for (const VariableEntry& entry : VariableCatalogue) {
    if (entry.stored_per_unit != 10) {
      EXPECT_EQ(entry.stored_per_unit, 100);
      hundredths += std::string(entry.short_name) + " ";
    }
  }
  EXPECT_EQ(hundredths, "frs wet scPDSI ");
}

// Those of the menu lines; some show none.
TEST(VariableCatalogue, HasTheUnitsOfStoredValues) {
  std::string units;
  for (const VariableEntry& entry : VariableCatalogue) {
    units += std::string(entry.units) + "|";
    EXPECT_NE(std::string(entry.menu_line).find(entry.units), std::string::npos);
  }
  EXPECT_EQ(units, "mm|degC*10|degC*10|degC*10|degC*10|hPa *10||%*10|days*100|||");
}

// These texts appear in the headings of CSV and netCDF files.
TEST(VariableCatalogue, NamesQuantitiesAndTheirUnits) {
  std::string quantities;
  for (const VariableEntry& entry : VariableCatalogue) {
    quantities +=
        std::string(entry.long_name) + " in " + std::string(entry.physical_unit) + "\n";
  }
  EXPECT_EQ(quantities,
            "precipitation in mm/month\n"
            "mean temperature in degC\n"
            "diurnal temperature range in degC\n"
            "mean daily minimum temperature in degC\n"
            "mean daily maximum temperature in degC\n"
            "vapour pressure in hPa\n"
            "potential evapotranspiration in mm/day\n"
            "cloud cover in percent\n"
            "frost days in days/month\n"
            "wet days in days/month\n"
            "self-calibrating Palmer drought severity index in 1\n");
}

TEST(VariableCatalogue, NamesItsFilesByTheShortNames) {
  for (const VariableEntry& entry : VariableCatalogue) {
    EXPECT_NE(entry.DataFileName.trimmed().find(entry.short_name),
              std::string_view::npos);
    EXPECT_EQ(entry.DataFileName.view().size(), 65U);
  }
}

TEST(VariableEntry, IsBlankUntilAVariableIsChosen) {
  const VariableEntry fresh;
  EXPECT_EQ(fresh.DataFileName.view(), std::string(65, ' '));
  EXPECT_EQ(fresh.TitleText.trimmed(), "");
}

TEST(DataFileExists, OnlyUnderItsWholeName) {
  const TemporaryFolder folder;
  const VariableEntry& entry = *find_variable(1);
  write_file("cru_ts4.01.1901.2016.pre.dat.newOLD", "");
  EXPECT_FALSE(data_file_exists(entry));
  write_file("cru_ts4.01.1901.2016.pre.dat.new", "");
  EXPECT_TRUE(data_file_exists(entry));
}

}  // namespace
}  // namespace veldmark
