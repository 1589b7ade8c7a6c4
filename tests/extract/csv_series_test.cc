#include "extract/csv_series.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "extract/text_output.h"
#include "extract/value_texts.h"
#include "support/temporary_folder.h"

namespace veldmark::extract {
namespace {

using veldmark::testing::file_content;
using veldmark::testing::TemporaryFolder;

constexpr Years kTwoYears{.first = 1999, .last = 2000};

// January 1999 is -12, and so on to 11; March 1999 is missing.
std::vector<std::int16_t> two_years() {
  std::vector<std::int16_t> series;
  for (std::int16_t value = -12; value < 12; ++value) {
    series.push_back(value);
  }
  series[2] = -999;
  return series;
}

std::string written(const std::string& place, bool wide, int times) {
  const TemporaryFolder folder;
  const ValueTexts texts(1, -999);
  TextOutput output("x");
  CsvSeries csv(output, texts, kTwoYears, wide);
  for (int i = 0; i < times; ++i) {
    csv.write(place, two_years());
  }
  output.complete();
  return file_content("x");
}

std::string repeated(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) {
    all += text;
  }
  return all;
}

TEST(CsvSeries, WritesALineAMonth) {
  EXPECT_EQ(csv_series_heading(false), "year,month,value");
  const std::vector<std::string> values{"-1.2", "-1.1", "",     "-0.9", "-0.8", "-0.7",
                                        "-0.6", "-0.5", "-0.4", "-0.3", "-0.2", "-0.1",
                                        "0.0",  "0.1",  "0.2",  "0.3",  "0.4",  "0.5",
                                        "0.6",  "0.7",  "0.8",  "0.9",  "1.0",  "1.1"};
  // The longest is longer than can be reserved at once.
  for (const std::size_t size : {1, 32'768, 32'769, 70'000}) {
    const std::string place = std::string(size - 1, 'p') + ",";
    std::string expected;
    for (int month = 0; month < 24; ++month) {
      expected += place + std::to_string(1999 + month / 12) + "," +
                  std::to_string(month % 12 + 1) + "," +
                  values.at(static_cast<std::size_t>(month)) + "\n";
    }
    EXPECT_TRUE(written(place, false, 3) == repeated(expected, 3)) << size;
  }
}

TEST(CsvSeries, WritesALineAYear) {
  EXPECT_EQ(csv_series_heading(true),
            "year,jan,feb,mar,apr,may,jun,jul,aug,sep,oct,nov,dec");
  for (const std::size_t size : {1, 70'000}) {
    const std::string place = std::string(size - 1, 'p') + ",";
    const std::string expected =
        place + "1999,-1.2,-1.1,,-0.9,-0.8,-0.7,-0.6,-0.5,-0.4,-0.3,-0.2,-0.1\n" +
        place + "2000,0.0,0.1,0.2,0.3,0.4,0.5,0.6,0.7,0.8,0.9,1.0,1.1\n";
    EXPECT_TRUE(written(place, true, 3) == repeated(expected, 3)) << size;
  }
}

// The place needs no padding and is longer than two buffers, so that the output's
// memory ends with what is asked for.
TEST(CsvSeries, HasRoomForTheLongestValues) {
  const TemporaryFolder folder;
  const std::string place = std::string(599'999, 'p') + ",";
  const ValueTexts texts(2, -999);
  TextOutput output("x");
  CsvSeries csv(output, texts, {1999, 1999}, true);
  csv.write(place, std::vector<std::int16_t>(12, -32768));
  output.complete();
  EXPECT_TRUE(file_content("x") == place + "1999" + repeated(",-327.68", 12) + "\n");
}

TEST(PaddedText, IsPaddedToWholeBlocks) {
  const auto padded_size = [](std::size_t size) {
    return PaddedText(std::string(size, 'x')).padded_size();
  };
  EXPECT_EQ(padded_size(0), 0U);
  EXPECT_EQ(padded_size(1), 16U);
  EXPECT_EQ(padded_size(15), 16U);
  EXPECT_EQ(padded_size(16), 16U);
  EXPECT_EQ(padded_size(17), 32U);
}

// Enough cells to fill many buffers.
TEST(CsvSeries, LosesNothingAtTheEndOfABuffer) {
  const std::string one = written("60.25,-139.75,", false, 1);
  EXPECT_TRUE(written("60.25,-139.75,", false, 3000) == repeated(one, 3000));
}

}  // namespace
}  // namespace veldmark::extract
