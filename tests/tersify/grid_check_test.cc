// A complete file has 1.8 GB. Completeness and the places of faults are tested here on
// grids of a few rows and columns; of the real grid only the dimensions are tested, 116
// years of 360 rows and 720 columns.

#include "tersify/grid_check.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "raw_text.h"

namespace veldmark::tersify {
namespace {

using companion::LineBuffer;
using testing::repeated;

constexpr GridShape kSmall{.first_year = 1901, .years = 2, .rows = 3, .columns = 2};
constexpr int kSmallLines = 72;

// Returns "complete" or the first fault of a text.
std::string verdict(const std::string& text, const GridShape& shape = kSmall) {
  std::size_t place = 0;
  LineBuffer lines([&](char* buffer, std::size_t size) {
    const std::size_t count = std::min(size, text.size() - place);
    std::copy_n(text.data() + place, count, buffer);
    place += count;
    return count;
  });
  return find_fault(lines, shape).value_or("complete");
}

// Returns a small grid with one line replaced; lines are counted from 1.
std::string grid_with(int line, const std::string& text) {
  return repeated(line - 1, " -999   50\n") + text +
         repeated(kSmallLines - line, " -999   50\n");
}

TEST(GridShape, ARealFileHas116YearsOf12MonthsOf360Lines) {
  EXPECT_EQ(GridShape{}.line_count(), 501120);
  EXPECT_EQ(GridShape{}.line_length(), 3600U);
}

TEST(GridShape, APlaceIsYearMonthAndRow) {
  EXPECT_EQ(place_of_line(1, {}), "year 1901, January, row 1");
  EXPECT_EQ(place_of_line(360, {}), "year 1901, January, row 360");
  EXPECT_EQ(place_of_line(361, {}), "year 1901, February, row 1");
  EXPECT_EQ(place_of_line(4320, {}), "year 1901, December, row 360");
  EXPECT_EQ(place_of_line(4321, {}), "year 1902, January, row 1");
  EXPECT_EQ(place_of_line(261643, {}), "year 1961, July, row 283");
  EXPECT_EQ(place_of_line(501120, {}), "year 2016, December, row 360");
}

TEST(GridShape, APlaceHasTheNameOfItsMonth) {
  std::string places;
  for (std::int64_t month = 0; month < 12; ++month) {
    places += place_of_line(month * 360 + 1, {}) + "\n";
  }
  EXPECT_EQ(places,
            "year 1901, January, row 1\nyear 1901, February, row 1\n"
            "year 1901, March, row 1\nyear 1901, April, row 1\n"
            "year 1901, May, row 1\nyear 1901, June, row 1\n"
            "year 1901, July, row 1\nyear 1901, August, row 1\n"
            "year 1901, September, row 1\nyear 1901, October, row 1\n"
            "year 1901, November, row 1\nyear 1901, December, row 1\n");
}

TEST(GridCheck, ExactlyTheLinesAndFieldsOfTheShapeAreComplete) {
  EXPECT_EQ(verdict(repeated(kSmallLines, " -999   50\n")), "complete");
}

TEST(GridCheck, CarriageReturnsAndAMissingLastLineEndAreTolerated) {
  EXPECT_EQ(verdict(repeated(kSmallLines, " -999   50\r\n")), "complete");
  EXPECT_EQ(verdict(repeated(kSmallLines - 1, " -999   50\n") + " -999   50"),
            "complete");
}

TEST(GridCheck, ATruncatedFileNamesTheMissingLine) {
  EXPECT_EQ(verdict(repeated(40, " -999   50\n")),
            "the file ends after 40 of 72 lines; the next is line 41 (year 1902, "
            "February, row 2)");
  EXPECT_EQ(verdict(""),
            "the file ends after 0 of 72 lines; the next is line 1 (year 1901, "
            "January, row 1)");
}

TEST(GridCheck, ATruncatedLineIsNamed) {
  EXPECT_EQ(verdict(repeated(40, " -999   50\n") + " -999  "),
            "line 41 (year 1902, February, row 2), column 2: the file ends in this "
            "line, after 7 of 10 characters");
}

TEST(GridCheck, TooManyLinesAreAFault) {
  EXPECT_EQ(verdict(repeated(kSmallLines + 1, " -999   50\n")),
            "line 73: the file goes on after its last row, line 72 (year 1902, "
            "December, row 3)");
  EXPECT_EQ(verdict(repeated(kSmallLines, " -999   50\n") + "\n").substr(0, 8),
            "line 73:");
  // Its last line would complete a third year.
  EXPECT_EQ(verdict(repeated(107, " -999   50\n") + "x\n").substr(0, 8), "line 73:");
}

TEST(GridCheck, LinesOfAnotherLengthAreAFault) {
  EXPECT_EQ(verdict(grid_with(5, " -999\n")),
            "line 5 (year 1901, February, row 2), column 2: the line ends after 5 of "
            "10 characters");
  EXPECT_EQ(verdict(grid_with(5, "\n")),
            "line 5 (year 1901, February, row 2), column 1: the line ends after 0 of "
            "10 characters");
  EXPECT_EQ(verdict(grid_with(5, " -999   50 \n")),
            "line 5 (year 1901, February, row 2), column 3: the line has more than 10 "
            "characters");
}

TEST(GridCheck, AFieldThatIsNoRightAlignedIntegerIsNamed) {
  for (const std::string field : {"     ", "   x1", "1 234", "50   ", "    -", "  +- ",
                                  "  --1", "  1-1", " 1.50", "\t\t\t50", "12 50"}) {
    EXPECT_EQ(verdict(grid_with(72, " -999" + field + "\n")),
              "line 72 (year 1902, December, row 3), column 2: '" +
                  std::string(field[0] == '\t' ? "???50" : field) +
                  "' is not an integer that ends at the right edge of its field");
  }
}

TEST(GridCheck, SignsAndLeadingZerosAreIntegers) {
  EXPECT_EQ(verdict(grid_with(1, "  +5000012\n")), "complete");
  EXPECT_EQ(verdict(grid_with(1, "-0001+0001\n")), "complete");
}

TEST(GridCheck, TheFirstFaultIsReported) {
  EXPECT_EQ(verdict(repeated(7, " -999   50\n") + "  x     y\n").substr(0, 44),
            "line 8 (year 1901, March, row 2), column 1: ");
}

TEST(GridCheck, FieldsAreCountedInARealLine) {
  const GridShape wide{.years = 1, .rows = 1};
  const std::string good = repeated(720, " -999");
  EXPECT_EQ(verdict(repeated(12, good + "\n"), wide), "complete");
  for (std::size_t column = 1; column <= 720; ++column) {
    std::string bad = good;
    bad[column * 5 - 1] = 'x';
    ASSERT_EQ(verdict(bad + "\n", wide),
              "line 1 (year 1901, January, row 1), column " + std::to_string(column) +
                  ": ' -99x' is not an integer that ends at the right edge of its "
                  "field");
  }
}

// Returns the number of good fields at the front of `line`, with digits after it.
std::int32_t good_fields(const std::string& line) {
  const std::string text = line + std::string(companion::kLinePadding, '7');
  return count_good_fields(std::string_view(text).substr(0, line.size()));
}

TEST(GridCheck, CharactersAfterTheLineAreNotCounted) {
  EXPECT_EQ(good_fields(repeated(11, "12345")), 11);
  EXPECT_EQ(good_fields(repeated(12, "12345")), 12);
  EXPECT_EQ(good_fields(repeated(13, "12345")), 13);
}

TEST(GridCheck, AFaultAmongLongNumbersIsFound) {
  for (int place = 0; place < 12; ++place) {
    for (const std::string field : {"     ", "1   1", "  - 1", "1234x", "    -"}) {
      EXPECT_EQ(
          good_fields(repeated(place, "12345") + field + repeated(12 - place, "12345")),
          place)
          << field;
    }
  }
}

TEST(GridCheck, TwelveFieldsWithoutAPlusSignAreTakenAtOnce) {
  for (const std::string field :
       {"    0", "12345", "  007", " -999", "   -1", "-9999"}) {
    for (const std::string after : {"    ", "7777", "xxxx"}) {
      EXPECT_TRUE(are_twelve_good_fields((repeated(12, field) + after).c_str()))
          << field << after;
    }
  }
  EXPECT_FALSE(are_twelve_good_fields((repeated(12, "   +1") + "    ").c_str()));
}

TEST(GridCheck, InALineOfFaultsNoFieldIsGood) {
  EXPECT_EQ(good_fields(repeated(13, "xxxxx")), 0);
}

TEST(GridCheck, VectorsAgreeWithTheScalarVersion) {
  std::mt19937 random(3);
  const std::vector<std::string> good{"    0", "12345", "  007",
                                      " -999", "   -1", "-9999"};
  const std::vector<std::string> odd{"   +1", "     ", "1   1",
                                     "  - 1", "1234x", "    -"};
  for (int i = 0; i < 20000; ++i) {
    const bool with_fault = random() % 2 == 0;
    std::string line;
    for (std::size_t field = 0; field < 40; ++field) {
      // Every other line has no minus signs, which would mask other faults.
      const std::size_t kinds = i / 2 % 2 == 0 ? good.size() : 3;
      line += with_fault && random() % 20 == 0 ? odd[random() % odd.size()]
                                               : good[random() % kinds];
    }
    if (i % 4 == 0) line[random() % line.size()] = static_cast<char>(random());
    line.resize(line.size() - random() % 8);
    ASSERT_EQ(good_fields(line), count_good_fields_scalar(line)) << line;
  }
}

}  // namespace
}  // namespace veldmark::tersify
