#include "series_to_grid/series_file.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "read_text.h"
#include "util/failure.h"

namespace veldmark::series_to_grid {
namespace {

const std::string kHeader2001 =
    "lon,lat,2001-01,2001-02,2001-03,2001-04,2001-05,2001-06,2001-07,2001-08,2001-09,"
    "2001-10,2001-11,2001-12\n";

void expect_failure(const std::string& text, const std::string& message) {
  try {
    read_text(text);
    ADD_FAILURE() << "accepted; expected: " << message;
  } catch (const Failure& error) {
    EXPECT_EQ(error.what(), message);
  }
}

// A header of the year 2001 and one line.
void expect_cell_failure(const std::string& line, const std::string& message) {
  expect_failure(kHeader2001 + line + "\n", message);
}

// A line with `coordinates` ("lon,lat") and the values 1 to 12.
std::string cell_at(const std::string& coordinates) {
  return coordinates + ",1,2,3,4,5,6,7,8,9,10,11,12\n";
}

TEST(ReadSeries, ACellHasItsColumnItsRowFromTheSouthAndItsValuesInOrder) {
  const Series series = read_text(kHeader2001 + cell_at("-179.25,-88.75"));
  EXPECT_EQ(series.first_year, 2001);
  EXPECT_EQ(series.last_year, 2001);
  ASSERT_EQ(series.cells.size(), 1U);
  EXPECT_EQ(series.cells[0].GridX, 2);
  EXPECT_EQ(series.cells[0].south_row, 3);
  EXPECT_EQ(series.cells[0].values,
            (std::vector<std::int32_t>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
}

TEST(ReadSeries, TheCornersOfTheGridAreCells) {
  const Series series =
      read_text(kHeader2001 + cell_at("-179.75,-89.75") + cell_at("179.75,89.75"));
  ASSERT_EQ(series.cells.size(), 2U);
  EXPECT_EQ(series.cells[0].GridX, 1);
  EXPECT_EQ(series.cells[0].south_row, 1);
  EXPECT_EQ(series.cells[1].GridX, 720);
  EXPECT_EQ(series.cells[1].south_row, 360);
}

TEST(ReadSeries, TheCellsAroundZeroDegreesAreTheMiddleOnes) {
  const Series series =
      read_text(kHeader2001 + cell_at("-0.25,-0.25") + cell_at("0.25,0.25"));
  EXPECT_EQ(series.cells.at(0).GridX, 360);
  EXPECT_EQ(series.cells.at(0).south_row, 180);
  EXPECT_EQ(series.cells.at(1).GridX, 361);
  EXPECT_EQ(series.cells.at(1).south_row, 181);
}

TEST(ReadSeries, CellsMayComeInAnyOrder) {
  const Series series =
      read_text(kHeader2001 + cell_at("10.25,50.25") + cell_at("10.25,-50.25"));
  EXPECT_EQ(series.cells.at(0).south_row, 281);
  EXPECT_EQ(series.cells.at(1).south_row, 80);
}

TEST(ReadSeries, SeveralYearsFollowEachOther) {
  std::string header = kHeader2001;
  header.pop_back();
  header +=
      ",2002-01,2002-02,2002-03,2002-04,2002-05,2002-06,2002-07,2002-08,2002-09,"
      "2002-10,2002-11,2002-12\n";
  const Series series =
      read_text(header +
                "0.25,0.25,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,"
                "21,22,23,24\n");
  EXPECT_EQ(series.first_year, 2001);
  EXPECT_EQ(series.last_year, 2002);
  ASSERT_EQ(series.cells.at(0).values.size(), 24U);
  EXPECT_EQ(series.cells.at(0).values.back(), 24);
}

TEST(ReadSeries, ValuesUpToFiveCharactersAreTakenAsTheyAre) {
  const Series series =
      read_text(kHeader2001 + "0.25,0.25,32767,-9999,-999,0,-0,13498,007,-1,1,2,3,4\n");
  EXPECT_EQ(
      series.cells.at(0).values,
      (std::vector<std::int32_t>{32767, -9999, -999, 0, 0, 13498, 7, -1, 1, 2, 3, 4}));
}

TEST(ReadSeries, ACarriageReturnBelongsToTheLineEnd) {
  std::string text = kHeader2001 + cell_at("0.25,0.25");
  for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 2) {
    text.insert(at, "\r");
  }
  EXPECT_EQ(read_text(text).cells.at(0).values.back(), 12);
}

TEST(ReadSeries, OnlyOneCarriageReturnBelongsToTheLineEnd) {
  expect_cell_failure("0.25,0.25,1,2,3,4,5,6,7,8,9,10,11,12\r\r",
                      "line 2: 2001-12: '12?' is not an integer");
}

TEST(ReadSeries, AnEmptyInputHasNoHeader) {
  expect_failure("", "line 1: the header is missing; the input is empty");
}

TEST(ReadSeries, ACompressedSeriesIsRecognised) {
  expect_failure("\x1f\x8b\x08\n",
                 "line 1: the series is compressed; feed it through zcat");
}

TEST(ReadSeries, TheHeaderBeginsWithTheCoordinates) {
  for (const std::string header : {"\n", "lat,lon,2001-01\n", "lon,lat\n", "LON,LAT,\n",
                                   " lon,lat,2001-01\n", "0.25,0.25,1\n"}) {
    expect_failure(header,
                   "line 1: the header must begin with 'lon,lat,' and the first month");
  }
}

TEST(ReadSeries, ALabelThatIsNoMonthIsRefused) {
  for (const std::string label :
       {"", "2001", "2001-1", "2001-00", "2001-13", "2001_01", "201-001", " 2001-01",
        "2001-01 ", "-001-01", "2001-+1", "20010-01"}) {
    expect_failure("lon,lat," + label + "\n",
                   "line 1: '" + label + "' is not a month (YYYY-MM)");
  }
}

TEST(ReadSeries, ACommaAfterTheLastMonthIsRefused) {
  std::string header = kHeader2001;
  header.insert(header.size() - 1, ",");
  expect_failure(header, "line 1: '' is not a month (YYYY-MM)");
}

TEST(ReadSeries, TheMonthsHaveNoGap) {
  expect_failure("lon,lat,2001-01,2001-03\n",
                 "line 1: '2001-03' follows 2001-01; the months must have no gap");
}

TEST(ReadSeries, AMonthIsNotNamedTwice) {
  expect_failure("lon,lat,2001-01,2001-01\n",
                 "line 1: '2001-01' follows 2001-01; the months must have no gap");
}

TEST(ReadSeries, NoYearIsLeftOut) {
  std::string header = kHeader2001;
  header.insert(header.size() - 1, ",2003-01");
  expect_failure(header,
                 "line 1: '2003-01' follows 2001-12; the months must have no gap");
}

TEST(ReadSeries, TheFirstMonthIsAJanuary) {
  expect_failure("lon,lat,2001-02,2001-03\n",
                 "line 1: the first month is 2001-02, not a January");
  expect_failure("lon,lat,0901-02,0901-03\n",
                 "line 1: the first month is 0901-02, not a January");
}

TEST(ReadSeries, TheLastMonthIsADecember) {
  expect_failure("lon,lat,2001-01,2001-02\n",
                 "line 1: the last month is 2001-02, not a December");
}

TEST(ReadSeries, ALongitudeOffTheCentresIsRefused) {
  for (const std::string lon :
       {"", "x", "0", "0.5", "0.2500001", "0.25 ", " 0.25", "+0.25", "180.25",
        "-180.25", "359.75", "nan", "inf", "-inf", "1e400", "2.5e-1", "0x1", "0.25x"}) {
    expect_cell_failure(
        lon + ",0.25,1,2,3,4,5,6,7,8,9,10,11,12",
        "line 2: '" + lon + "' is not the longitude of a cell's centre");
  }
}

TEST(ReadSeries, ALatitudeOffTheCentresIsRefused) {
  for (const std::string lat :
       {"", "y", "90", "90.25", "-90.25", "89.7", "120.25", "nan"}) {
    expect_cell_failure("0.25," + lat + ",1,2,3,4,5,6,7,8,9,10,11,12",
                        "line 2: '" + lat + "' is not the latitude of a cell's centre");
  }
}

TEST(ReadSeries, ALineWithTooFewValuesIsRefused) {
  expect_cell_failure(
      "0.25,0.25,1,2,3,4,5,6,7,8,9,10,11",
      "line 2: found 13 fields, expected 14: longitude, latitude and 12 values");
}

TEST(ReadSeries, ALineWithTooManyValuesIsRefused) {
  expect_cell_failure(
      "0.25,0.25,1,2,3,4,5,6,7,8,9,10,11,12,",
      "line 2: found 15 fields, expected 14: longitude, latitude and 12 values");
}

TEST(ReadSeries, AnEmptyLineIsRefusedAlsoAtTheEnd) {
  expect_failure(
      kHeader2001 + cell_at("0.25,0.25") + "\n",
      "line 3: found 1 fields, expected 14: longitude, latitude and 12 values");
}

TEST(ReadSeries, AValueThatIsNoIntegerIsNamedWithItsMonth) {
  for (const std::string value :
       {"", "-", "+5", "1.5", " 5", "5 ", "1e2", "--1", "1-", "NA", "123456x"}) {
    expect_cell_failure("0.25,0.25,1,2,3,4,5,6," + value + ",8,9,10,11,12",
                        "line 2: 2001-07: '" + value + "' is not an integer");
  }
}

TEST(ReadSeries, AValueOfSixCharactersIsRefused) {
  for (const std::string value :
       {"100000", "-10000", "000001", "99999999999999999999"}) {
    expect_cell_failure(
        "0.25,0.25," + value + ",2,3,4,5,6,7,8,9,10,11,12",
        "line 2: 2001-01: '" + value + "' has more than five characters");
  }
}

TEST(ReadSeries, ACellListedTwiceIsNamedWithBothLines) {
  expect_failure(
      kHeader2001 + cell_at("0.25,0.25") + cell_at("0.75,0.25") + cell_at("0.250,0.25"),
      "line 4: the cell is already listed on line 2");
}

TEST(ReadSeries, TheEndOfARowAndTheBeginningOfTheNextAreTwoCells) {
  const Series series =
      read_text(kHeader2001 + cell_at("179.75,-89.75") + cell_at("-179.75,-89.25"));
  EXPECT_EQ(series.cells.size(), 2U);
}

TEST(ReadSeries, ASeriesWithoutCellsIsRefused) {
  expect_failure(kHeader2001, "line 2: the series lists no cell");
}

TEST(ReadSeries, ALastLineWithoutNewlineIsRefused) {
  std::string text = kHeader2001 + cell_at("0.25,0.25");
  text.pop_back();
  expect_failure(text, "line 2: the line end is missing; the series may be cut short");
}

TEST(ReadSeries, AFailureOfTheInputIsNotTakenForTheEnd) {
  bool begun = false;
  EXPECT_THROW(read_series([&](char* buffer, std::size_t size) -> std::size_t {
                 if (begun) {
                   throw Failure("cannot read");
                 }
                 begun = true;
                 return (kHeader2001 + cell_at("0.25,0.25")).copy(buffer, size);
               }),
               Failure);
}

TEST(ReadSeries, AValueThatWouldBeReadAsAnotherOneIsRefused) {
  for (const std::string value : {"32768", "40000", "99999"}) {
    expect_cell_failure("0.25,0.25," + value + ",2,3,4,5,6,7,8,9,10,11,12",
                        "line 2: 2001-01: '" + value + "' is not within -32768..32767");
  }
  const Series series =
      read_text(kHeader2001 + "0.25,0.25,32767,-9999,3,4,5,6,7,8,9,10,11,12\n");
  EXPECT_EQ(series.cells.at(0).values.at(0), 32767);
}

TEST(ReadSeries, AByteOrderMarkBeforeTheHeaderIsSkipped) {
  EXPECT_EQ(read_text("\xef\xbb\xbf" + kHeader2001 + cell_at("0.25,0.25")).cells.size(),
            1U);
}

TEST(ReadSeries, AnOverlongLineIsReported) {
  const std::string endless(2'000'000, ',');
  expect_failure(endless, "line 1: it is longer than 1048576 characters");
  expect_failure(kHeader2001 + endless, "line 2: it is longer than 1048576 characters");
}

TEST(ReadSeries, TheLongestHeaderThatCanBeIsRead) {
  std::string header = "lon,lat";
  std::string cell = "0.25,0.25";
  for (int month = 0; month < 10000 * 12; ++month) {
    const std::string year = std::to_string(10000 + month / 12).substr(1);
    const std::string of_year = std::to_string(101 + month % 12).substr(1);
    header += "," + year + "-" + of_year;
    cell += ",-9999";
  }
  const Series series = read_text(header + "\r\n" + cell + "\r\n");
  EXPECT_EQ(series.first_year, 0);
  EXPECT_EQ(series.last_year, 9999);
}

TEST(ReadSeries, ControlCharactersInFieldsAreReplaced) {
  expect_failure("lon,lat,\x1b[31m\n", "line 1: '?[31m' is not a month (YYYY-MM)");
  expect_cell_failure("\x1b]0;x\a,0.25,1,2,3,4,5,6,7,8,9,10,11,12",
                      "line 2: '?]0;x?' is not the longitude of a cell's centre");
  expect_cell_failure(std::string("60.25\0x,", 8) + "0.25,1,2,3,4,5,6,7,8,9,10,11,12",
                      "line 2: '60.25?x' is not the longitude of a cell's centre");
}

}  // namespace
}  // namespace veldmark::series_to_grid
