// Rows, columns, values and tiles of a netCDF grid.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "catalogue/variable_name.h"
#include "tersify/netcdf_axes.h"
#include "tersify/netcdf_fault.h"
#include "tersify/netcdf_tiles.h"
#include "tersify/netcdf_values.h"

namespace veldmark::tersify {
namespace {

template <typename Action>
void expect_fault(const std::string& message, const Action& action) {
  try {
    action();
    ADD_FAILURE() << "no fault; expected: " << message;
  } catch (const NetcdfFault& fault) {
    EXPECT_EQ(fault.what(), message);
  }
}

// Returns cell centres from `first` on, half a degree apart.
std::vector<double> centres(double first, std::size_t count, double step = 0.5) {
  std::vector<double> degrees(count);
  for (std::size_t i = 0; i < count; ++i) {
    degrees[i] = first + step * static_cast<double>(i);
  }
  return degrees;
}

TEST(FindRowOrder, TakesBothDirections) {
  EXPECT_EQ(find_row_order(centres(-89.75, 360)), RowOrder::kSouthFirst);
  EXPECT_EQ(find_row_order(centres(89.75, 360, -0.5)), RowOrder::kNorthFirst);
  EXPECT_EQ(find_row_order(centres(-89.7509, 360)), RowOrder::kSouthFirst);
}

TEST(FindRowOrder, RefusesOtherLatitudes) {
  expect_fault("there are 180 latitudes; expected 360, half a degree apart",
               [] { find_row_order(centres(-89.5, 180, 1)); });
  expect_fault("the first latitude is -90; expected -89.75 or 89.75",
               [] { find_row_order(centres(-90, 360)); });
  expect_fault("the first latitude is -89.7511; expected -89.75 or 89.75",
               [] { find_row_order(centres(-89.7511, 360)); });
  expect_fault(
      "latitude 2 is -89.25; expected 89.25, half a degree from the one before", [] {
        std::vector<double> mixed = centres(89.75, 360, -0.5);
        mixed[1] = -89.25;
        find_row_order(mixed);
      });
}

TEST(FindFirstColumn, TakesBothConventions) {
  EXPECT_EQ(find_first_column(centres(-179.75, 720)), 0U);
  EXPECT_EQ(find_first_column(centres(0.25, 720)), 360U);
}

TEST(FindFirstColumn, RefusesOtherLongitudes) {
  expect_fault("there are 721 longitudes; expected 720, half a degree apart",
               [] { find_first_column(centres(-179.75, 721)); });
  expect_fault("the first longitude is 179.75; expected -179.75 or 0.25",
               [] { find_first_column(centres(179.75, 720, -0.5)); });
  expect_fault(
      "longitude 720 is 179.7; expected 179.75, half a degree from the one before", [] {
        std::vector<double> moved = centres(-179.75, 720);
        moved.back() = 179.7;
        find_first_column(moved);
      });
  expect_fault(
      "longitude 720 is 359.7; expected 359.75, half a degree from the one before", [] {
        std::vector<double> moved = centres(0.25, 720);
        moved.back() = 359.7;
        find_first_column(moved);
      });
}

TEST(StoredValue, IsTheNearestInteger) {
  EXPECT_EQ(stored_value(8.400001, 10), 84);
  EXPECT_EQ(stored_value(8.399999, 10), 84);
  EXPECT_EQ(stored_value(-0.1F, 10), -1);
  EXPECT_EQ(stored_value(-0.0, 10), 0);
  EXPECT_EQ(stored_value(31.0F, 100), 3100);
  EXPECT_EQ(stored_value(8.4009, 10), 84);
  EXPECT_EQ(stored_value(-8.4009, 10), -84);
  EXPECT_EQ(stored_value(0.01, 1), 0);
}

TEST(StoredValue, MustBeNearAnInteger) {
  EXPECT_EQ(stored_value(8.4011, 10), std::nullopt);
  EXPECT_EQ(stored_value(8.3989, 10), std::nullopt);
  EXPECT_EQ(stored_value(99999.01, 1), std::nullopt);
  EXPECT_EQ(stored_value(-9999.01, 1), std::nullopt);
  EXPECT_EQ(stored_value(-8.4011, 10), std::nullopt);
  EXPECT_EQ(stored_value(8.4011, 100), std::nullopt);
  EXPECT_EQ(stored_value(0.0011, 10), std::nullopt);
}

TEST(StoredValue, MustFitFiveCharacters) {
  EXPECT_EQ(stored_value(9999.9F, 10), 99999);
  EXPECT_EQ(stored_value(10000, 10), std::nullopt);
  EXPECT_EQ(stored_value(-999.9F, 10), -9999);
  EXPECT_EQ(stored_value(-1000, 10), std::nullopt);
  EXPECT_EQ(stored_value(1e300, 10), std::nullopt);
  EXPECT_EQ(stored_value(std::numeric_limits<double>::infinity(), 10), std::nullopt);
  EXPECT_EQ(stored_value(std::numeric_limits<double>::quiet_NaN(), 10), std::nullopt);
}

// As the producers compute them: every stored tenth and hundredth, divided or
// multiplied in single precision.
TEST(StoredValue, TakesEveryStoredValueInSinglePrecision) {
  for (std::int32_t stored = -9999; stored <= 99999; ++stored) {
    const auto number = static_cast<float>(stored);
    ASSERT_EQ(stored_value(number / 10, 10), stored);
    ASSERT_EQ(stored_value(number * 0.1F, 10), stored);
    ASSERT_EQ(stored_value(number / 100, 100), stored);
    ASSERT_EQ(stored_value(number * 0.01F, 100), stored);
  }
}

// Returns a month with this value in every cell, row by row.
std::vector<float> month_of(float value) {
  return std::vector<float>(std::size_t{kGridRows} * kGridColumns, value);
}

std::string field_of(std::string_view lines, std::size_t line, std::size_t column) {
  return std::string(lines.substr(line * 3601 + column * 5, 5));
}

const VariableEntry& kTmp = *find_by_short_name("tmp");
const VariableEntry& kIndex = *find_by_short_name("scPDSI");

// Values 1.0 in input row 10 column 20, by the form of the file.
std::string lines_of(const VariableEntry& entry, RowOrder rows,
                     std::size_t first_column) {
  std::vector<float> values = month_of(-1e9F);
  values[std::size_t{10} * kGridColumns + 20] = 1;
  NetcdfLines lines(entry,
                    {.rows = rows, .first_column = first_column, .missing = {-1e9F}});
  return std::string(lines.make(values, {}));
}

TEST(NetcdfLines, TheRowsAreInTheOrderOfTheCopy) {
  EXPECT_EQ(field_of(lines_of(kTmp, RowOrder::kSouthFirst, 0), 10, 20), "   10");
  EXPECT_EQ(field_of(lines_of(kTmp, RowOrder::kNorthFirst, 0), 349, 20), "   10");
  EXPECT_EQ(field_of(lines_of(kIndex, RowOrder::kSouthFirst, 0), 349, 20), "  100");
  EXPECT_EQ(field_of(lines_of(kIndex, RowOrder::kNorthFirst, 0), 10, 20), "  100");
}

TEST(NetcdfLines, TheColumnsBeginInTheWest) {
  EXPECT_EQ(field_of(lines_of(kTmp, RowOrder::kSouthFirst, 360), 10, 380), "   10");
}

TEST(NetcdfLines, EveryOtherFieldIsMissing) {
  const std::string tmp = lines_of(kTmp, RowOrder::kSouthFirst, 0);
  EXPECT_EQ(tmp.size(), 360U * 3601);
  EXPECT_EQ(std::count(tmp.begin(), tmp.end(), '9'), 3 * (360 * 720 - 1));
  EXPECT_EQ(std::count(tmp.begin(), tmp.end(), '\n'), 360);
  EXPECT_EQ(field_of(tmp, 0, 0), " -999");
  EXPECT_EQ(field_of(lines_of(kIndex, RowOrder::kSouthFirst, 0), 0, 0), "-9999");
}

TEST(NetcdfLines, ABandIsPlacedAmongTheLinesOfItsMonth) {
  const NetcdfRows band{.first = 40, .count = 10};
  NetcdfLines same(kTmp, {.rows = RowOrder::kSouthFirst, .missing = {}});
  NetcdfLines turned(kTmp, {.rows = RowOrder::kNorthFirst, .missing = {}});
  EXPECT_EQ(same.first_line(band), 40U);
  EXPECT_EQ(turned.first_line(band), 310U);
  std::vector<float> values(std::size_t{10} * kGridColumns, 0);
  values[0] = 5;
  EXPECT_EQ(field_of(same.make(values, band), 0, 0), "   50");
  EXPECT_EQ(field_of(turned.make(values, band), 9, 0), "   50");
}

void expect_value_fault(const std::string& message, float value,
                        const NetcdfGridForm& form) {
  std::vector<float> values = month_of(0);
  values[std::size_t{300} * kGridColumns + 80] = value;
  NetcdfLines lines(kTmp, form);
  expect_fault(message, [&] { lines.make(values, {}); });
}

TEST(NetcdfLines, AnInvalidValueIsNamedWithItsPlace) {
  expect_value_fault(
      "latitude 60.25, longitude -139.75: 10 times 0.125 is no integer "
      "from -9999 to 99999",
      0.125F, {});
  expect_value_fault(
      "latitude -60.25, longitude 40.25: 10 times 0.125 is no integer "
      "from -9999 to 99999",
      0.125F, {.rows = RowOrder::kNorthFirst, .first_column = 360});
}

// It would be read as a missing value.
TEST(NetcdfLines, AValueThatIsTheMissingCodeIsAFault) {
  expect_value_fault(
      "latitude 60.25, longitude -139.75: 10 times -99.9000015 is the "
      "code of a missing value",
      -99.9F, {});
}

TEST(NetcdfLines, MissingIsWhatTheFileNames) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float fill = 9.96921e+36F;
  NetcdfLines lines(kTmp, {.missing = {fill, nan, -1, fill}});
  std::vector<float> values = month_of(0);
  values[1] = fill;
  values[2] = nan;
  values[3] = -1;
  const std::string text(lines.make(values, {}));
  EXPECT_EQ(text.substr(0, 25), "    0 -999 -999 -999    0");
  expect_value_fault(
      "latitude 60.25, longitude -139.75: 10 times nan is no integer "
      "from -9999 to 99999",
      nan, {.missing = {fill}});
  expect_value_fault(
      "latitude 60.25, longitude -139.75: 10 times 9.96920933e+36 is no "
      "integer from -9999 to 99999",
      std::nextafter(fill, 0.0F), {.missing = {fill}});
}

NetcdfVariable chunked(std::size_t months, std::vector<std::size_t> chunk) {
  NetcdfVariable variable;
  variable.dimensions = {{"time", months}, {"lat", 360}, {"lon", 720}};
  variable.chunk = std::move(chunk);
  return variable;
}

// Every month and row is in exactly one tile; no tile is empty or exceeds the limit.
void expect_whole(const NetcdfVariable& variable) {
  std::set<std::pair<std::size_t, std::size_t>> seen;
  std::size_t count = 0;
  for (const NetcdfTile& tile : tiles_of(variable)) {
    EXPECT_GT(tile.months, 0U);
    EXPECT_GT(tile.rows.count, 0U);
    EXPECT_LE(tile.months * tile.rows.count * kGridColumns, kMaxTileValues);
    for (std::size_t i = 0; i < tile.months; ++i) {
      for (std::size_t j = 0; j < tile.rows.count; ++j, ++count) {
        seen.emplace(tile.first_month + i, tile.rows.first + j);
      }
    }
  }
  const std::size_t months = variable.dimensions[0].length;
  EXPECT_EQ(count, months * 360);
  EXPECT_EQ(seen.size(), months * 360);
  EXPECT_EQ(seen.rbegin()->first, months - 1);
  EXPECT_EQ(seen.rbegin()->second, 359U);
}

TEST(TilesOf, AreTheWholeGrid) {
  for (const auto& chunk : std::vector<std::vector<std::size_t>>{{},
                                                                 {1, 360, 720},
                                                                 {1, 1, 1},
                                                                 {12, 100, 100},
                                                                 {7, 360, 720},
                                                                 {5000, 500, 900},
                                                                 {120, 11, 720},
                                                                 {100'000, 1, 1}}) {
    expect_whole(chunked(120, chunk));
  }
}

// No chunk is shared by two tiles if whole chunks fit into a tile.
TEST(TilesOf, HoldWholeChunks) {
  const auto expect = [](std::size_t months, std::vector<std::size_t> chunk,
                         const NetcdfTile& first) {
    const NetcdfTile found = tiles_of(chunked(months, std::move(chunk))).front();
    EXPECT_EQ(found.months, first.months);
    EXPECT_EQ(found.rows.count, first.rows.count);
  };
  expect(1392, {}, {.months = 1, .rows = {.count = 360}});
  expect(1392, {1, 360, 720}, {.months = 1, .rows = {.count = 360}});
  expect(1392, {12, 360, 720}, {.months = 12, .rows = {.count = 360}});
  expect(1392, {279, 72, 144}, {.months = 279, .rows = {.count = 72}});
  expect(1392, {1392, 10, 10}, {.months = 1392, .rows = {.count = 10}});
  expect(24, {64, 100, 100}, {.months = 24, .rows = {.count = 360}});
  expect(1392, {1392, 360, 720}, {.months = 1392, .rows = {.count = 16}});
  expect(100'000, {100'000, 1, 1}, {.months = 23'301, .rows = {.count = 1}});
}

}  // namespace
}  // namespace veldmark::tersify
