#include "extract/place.h"

#include <gtest/gtest.h>

#include <numbers>
#include <random>
#include <string>
#include <utility>

#include "util/failure.h"

namespace veldmark::extract {
namespace {

Box box_of(const std::string& latitudes, const std::string& longitudes) {
  Box box;
  set_latitudes(latitudes, box);
  set_longitudes(longitudes, box);
  return box;
}

std::string fault_of_latitudes(const std::string& text) {
  Box box;
  try {
    set_latitudes(text, box);
  } catch (const UsageError& error) {
    return error.what();
  }
  return "";
}

std::string fault_of_longitudes(const std::string& text) {
  Box box;
  try {
    set_longitudes(text, box);
  } catch (const UsageError& error) {
    return error.what();
  }
  return "";
}

std::string fault_of_point(const std::string& text) {
  try {
    parse_point(text);
  } catch (const UsageError& error) {
    return error.what();
  }
  return "";
}

void expect_ranges(const Box& box, RowOrder order, const GridRanges& expected) {
  const GridRanges ranges = ranges_of(box, order);
  EXPECT_EQ(ranges.FirstRow, expected.FirstRow);
  EXPECT_EQ(ranges.LastRow, expected.LastRow);
  EXPECT_EQ(ranges.FirstCol, expected.FirstCol);
  EXPECT_EQ(ranges.LastCol, expected.LastCol);
  EXPECT_EQ(ranges.CrossesDateLine, expected.CrossesDateLine);
  EXPECT_EQ(ranges.EastFirstCol, expected.EastFirstCol);
  EXPECT_EQ(ranges.EastLastCol, expected.EastLastCol);
}

TEST(ParseDegrees, AcceptsPlainDecimalNumbersOnly) {
  EXPECT_EQ(parse_degrees("-10.25"), -10.25);
  EXPECT_EQ(parse_degrees("+5"), 5);
  EXPECT_EQ(parse_degrees(".5"), 0.5);
  EXPECT_EQ(parse_degrees("1e2"), 100);
  for (const char* text :
       {"", " 1", "1 ", "1,5", "10N", "nan", "inf", "+-1", "++1", "0x10", "-", "."}) {
    EXPECT_FALSE(parse_degrees(text)) << text;
  }
}

TEST(SetLatitudes, RefusesWhatIsNoRange) {
  EXPECT_EQ(fault_of_latitudes("60:50"),
            "--lat 60:50: the southern edge comes first; did you mean --lat 50:60?");
  EXPECT_EQ(fault_of_latitudes("-90.5:10"),
            "--lat -90.5:10: latitudes lie between -90 and 90; longitudes go to --lon");
  EXPECT_EQ(fault_of_latitudes("10:90.5"),
            "--lat 10:90.5: latitudes lie between -90 and 90; longitudes go to --lon");
  EXPECT_EQ(fault_of_latitudes("x:60"),
            "--lat 'x:60': give two latitudes, south first, as in --lat 50:60");
  EXPECT_EQ(fault_of_latitudes("50"),
            "--lat '50': give two latitudes, south first, as in --lat 50:60");
  EXPECT_EQ(fault_of_latitudes("50:60:70"),
            "--lat '50:60:70': give two latitudes, south first, as in --lat 50:60");
  EXPECT_EQ(fault_of_latitudes("-90:90"), "");
}

TEST(SetLongitudes, SaysWhatItMadeOfLongitudesBeyond180) {
  Box box;
  EXPECT_EQ(set_longitudes("282:287", box), "--lon 282:287 taken as -78:-73");
  EXPECT_EQ(box.west, -78);
  EXPECT_EQ(box.east, -73);
  EXPECT_EQ(set_longitudes("170:190", box), "--lon 170:190 taken as 170:-170");
  EXPECT_EQ(set_longitudes("350:10", box), "--lon 350:10 taken as -10:10");
  EXPECT_EQ(set_longitudes("0:360", box), "--lon 0:360 taken as -180:180");
  EXPECT_EQ(set_longitudes("-180:180", box), "");
  EXPECT_EQ(set_longitudes("170:-170", box), "");
  EXPECT_EQ(set_longitudes("170:180", box), "");
  EXPECT_EQ(box.east, 180);
}

TEST(SetLongitudes, RefusesWhatIsNoRange) {
  EXPECT_EQ(fault_of_longitudes("-190:10"),
            "--lon -190:10: longitudes lie between -180 and 360");
  EXPECT_EQ(fault_of_longitudes("0:361"),
            "--lon 0:361: longitudes lie between -180 and 360");
  EXPECT_EQ(fault_of_longitudes("-10:351"),
            "--lon -10:351: that is more than once around the globe");
  EXPECT_EQ(fault_of_longitudes("10"),
            "--lon '10': give two longitudes, west first, as in --lon -10:10");
}

TEST(ParsePoint, SaysWhenLatitudeAndLongitudeMayBeExchanged) {
  EXPECT_EQ(fault_of_point("120,10"),
            "--cell 120,10: the first number is the latitude, between -90 and 90; are "
            "latitude and longitude exchanged?");
  EXPECT_EQ(fault_of_point("120,100"),
            "--cell 120,100: the first number is the latitude, between -90 and 90");
  EXPECT_EQ(fault_of_point("400,10"),
            "--cell 400,10: the first number is the latitude, between -90 and 90");
  EXPECT_EQ(fault_of_point("10,400"),
            "--cell 10,400: the second number is the longitude, between -180 and 360");
  EXPECT_EQ(fault_of_point("10;20"),
            "--cell '10;20': give latitude and longitude, as in --cell 60.25,-139.75");
  EXPECT_EQ(parse_point("10,282").longitude, -78);
}

TEST(RangesOf, TakesCentresOnBothEdges) {
  expect_ranges(box_of("10.25:10.25", "0.25:0.75"), RowOrder::kSouthFirst,
                {.FirstRow = 201, .LastRow = 201, .FirstCol = 361, .LastCol = 362});
  expect_ranges(box_of("10.25:10.75", "0.25:0.75"), RowOrder::kNorthFirst,
                {.FirstRow = 159, .LastRow = 160, .FirstCol = 361, .LastCol = 362});
}

TEST(RangesOf, AWholeGlobeHasAllRowsAndColumns) {
  for (const RowOrder order : {RowOrder::kSouthFirst, RowOrder::kNorthFirst}) {
    expect_ranges(Box{}, order,
                  {.FirstRow = 1, .LastRow = 360, .FirstCol = 1, .LastCol = 720});
  }
}

TEST(RangesOf, ABoxAcrossTheMeridianHasTwoColumnRanges) {
  expect_ranges(box_of("-10:10", "170:-170"), RowOrder::kSouthFirst,
                {.FirstRow = 161,
                 .LastRow = 200,
                 .FirstCol = 1,
                 .LastCol = 20,
                 .EastFirstCol = 701,
                 .EastLastCol = 720,
                 .CrossesDateLine = true});
  expect_ranges(box_of("-10:10", "179.75:-170"), RowOrder::kSouthFirst,
                {.FirstRow = 161,
                 .LastRow = 200,
                 .FirstCol = 1,
                 .LastCol = 20,
                 .EastFirstCol = 720,
                 .EastLastCol = 720,
                 .CrossesDateLine = true});
}

TEST(RangesOf, ABoxThatOnlyTouchesTheMeridianHasOneColumnRange) {
  expect_ranges(box_of("-10:10", "170:-180"), RowOrder::kSouthFirst,
                {.FirstRow = 161, .LastRow = 200, .FirstCol = 701, .LastCol = 720});
  expect_ranges(box_of("-10:10", "180:-170"), RowOrder::kSouthFirst,
                {.FirstRow = 161, .LastRow = 200, .FirstCol = 1, .LastCol = 20});
}

// Checks every cell: is its centre in the box?
TEST(RangesOf, HasTheCellsWhoseCentresLieInTheBox) {
  std::mt19937 random(1);
  const auto bound = [&](int most) {
    return static_cast<double>(static_cast<int>(random() % (8U * most + 1))) / 4 - most;
  };
  for (int round = 0; round < 400; ++round) {
    Box box;
    box.south = bound(90);
    box.north = bound(90);
    if (box.south > box.north) {
      std::swap(box.south, box.north);
    }
    box.west = bound(180);
    box.east = bound(180);
    const RowOrder order =
        random() % 2 == 0 ? RowOrder::kSouthFirst : RowOrder::kNorthFirst;
    const GridRanges ranges = ranges_of(box, order);
    for (std::int32_t row = 1; row <= 360; ++row) {
      const double latitude = centre_of({row, 1}, order).latitude;
      ASSERT_EQ(ranges.FirstRow <= row && row <= ranges.LastRow,
                box.south <= latitude && latitude <= box.north);
    }
    for (std::int32_t column = 1; column <= 720; ++column) {
      const double longitude = centre_of({1, column}, order).longitude;
      const bool inside = box.west <= box.east
                              ? box.west <= longitude && longitude <= box.east
                              : box.west <= longitude || longitude <= box.east;
      const bool found = (ranges.FirstCol <= column && column <= ranges.LastCol) ||
                         (ranges.CrossesDateLine && ranges.EastFirstCol <= column &&
                          column <= ranges.EastLastCol);
      ASSERT_EQ(found, inside) << box.west << ":" << box.east << " column " << column;
    }
  }
}

TEST(CellOf, APointOnAnEdgeBelongsToTheCellNorthAndEastOfIt) {
  const auto cell = [](double latitude, double longitude) {
    return cell_of({latitude, longitude}, RowOrder::kSouthFirst);
  };
  EXPECT_EQ(cell(60.25, -139.75), (Cell{301, 81}));  // a centre
  EXPECT_EQ(cell(60.0, -140.0), (Cell{301, 81}));    // a corner
  EXPECT_EQ(cell(60.49, -139.51), (Cell{301, 81}));
  EXPECT_EQ(cell(60.5, -139.75), (Cell{302, 81}));
  EXPECT_EQ(cell(60.25, -139.5), (Cell{301, 82}));
  EXPECT_EQ(cell(0, 0), (Cell{181, 361}));
  EXPECT_EQ(cell(-1e-20, -1e-20), (Cell{180, 360}));
  EXPECT_EQ(cell(-90, -180), (Cell{1, 1}));
  EXPECT_EQ(cell(90, 179.9), (Cell{360, 720}));
  EXPECT_EQ(cell(90, 180), (Cell{360, 1}));
  EXPECT_EQ(cell_of({60.25, -139.75}, RowOrder::kNorthFirst), (Cell{60, 81}));
}

TEST(DistanceKm, IsThatOfTheGreatCircle) {
  constexpr double kDegree = 111.19508;  // 6371.0088 * pi / 180
  EXPECT_NEAR(distance_km({0, 0}, {0, 1}), kDegree, 1e-4);
  EXPECT_NEAR(distance_km({89, 0}, {89, 180}), 2 * kDegree, 1e-4);
  EXPECT_NEAR(distance_km({0, 179.75}, {0, -179.75}), kDegree / 2, 1e-4);
  EXPECT_NEAR(distance_km({0, 0}, {0, 180}), 6371.0088 * std::numbers::pi, 1e-6);
  EXPECT_EQ(distance_km({45.25, 10.25}, {45.25, 10.25}), 0);
  EXPECT_EQ(distance_km({45, 179.75}, {45, -179.75}),
            distance_km({45, 179.75}, {45, 179.25}));
}

}  // namespace
}  // namespace veldmark::extract
