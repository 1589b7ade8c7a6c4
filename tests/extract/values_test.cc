// Values as text, area means and the variance test: what is calculated and written.

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <string>
#include <vector>

#include "catalogue/variable_name.h"
#include "extract/area_mean.h"
#include "extract/csv_series.h"
#include "extract/text_output.h"
#include "extract/value_texts.h"
#include "extract/variance_columns.h"
#include "support/temporary_folder.h"

namespace veldmark::extract {
namespace {

TEST(ExactDecimal, PlacesThePoint) {
  EXPECT_EQ(exact_decimal(253, 1), "25.3");
  EXPECT_EQ(exact_decimal(-5, 1), "-0.5");
  EXPECT_EQ(exact_decimal(0, 1), "0.0");
  EXPECT_EQ(exact_decimal(-100, 1), "-10.0");
  EXPECT_EQ(exact_decimal(1313, 2), "13.13");
  EXPECT_EQ(exact_decimal(-5, 2), "-0.05");
  EXPECT_EQ(exact_decimal(-32768, 2), "-327.68");
  EXPECT_EQ(exact_decimal(-32768, 1), "-3276.8");
  EXPECT_EQ(exact_decimal(-999, 0), "-999");
}

// Every text, read back as a number and scaled, gives the stored integer.
TEST(ValueTexts, AllValuesReadBack) {
  constexpr std::array<int, 3> kPowers = {1, 10, 100};
  for (int decimals = 0; decimals <= 2; ++decimals) {
    const ValueTexts texts(decimals, -999);
    for (int value = -32768; value <= 32767; ++value) {
      std::array<char, 16> room{};
      char* const end = texts.write(static_cast<std::int16_t>(value), room.data());
      const std::string text(room.data(), end);
      if (value == -999) {
        ASSERT_EQ(text, "");
      } else {
        ASSERT_EQ(std::stod(text), value / double(kPowers.at(decimals))) << value;
        ASSERT_EQ(text, exact_decimal(value, decimals));
      }
    }
  }
}

TEST(CsvField, QuotesWhatNeedsQuotes) {
  EXPECT_EQ(csv_field("plain text"), "plain text");
  EXPECT_EQ(csv_field(""), "");
  EXPECT_EQ(csv_field("a,b"), "\"a,b\"");
  EXPECT_EQ(csv_field("say \"x\""), "\"say \"\"x\"\"\"");
  EXPECT_EQ(csv_field("two\nlines"), "\"two\nlines\"");
}

// The columns of a table of sites can be longer than a buffer.
TEST(CsvSeries, WritesPlacesOfAnyLength) {
  const testing::TemporaryFolder folder;
  const std::vector<std::int16_t> series = {-1, 253, -999, 0,  5,  6,
                                            7,  8,   9,    10, 11, 12};
  const std::vector<std::string> values = {"-0.1", "25.3", "",    "0.0", "0.5", "0.6",
                                           "0.7",  "0.8",  "0.9", "1.0", "1.1", "1.2"};
  for (const std::size_t size : {1, 15, 16, 17, 33, 300'000}) {
    const std::string place = std::string(size, 'x') + ",";
    std::string text_long;
    std::string text_wide = place + "1901";
    for (std::size_t i = 0; i < values.size(); ++i) {
      text_long += place + "1901," + std::to_string(i + 1) + "," + values[i] + "\n";
      text_wide += "," + values[i];
    }
    for (const bool wide : {false, true}) {
      TextOutput output("x.csv");
      const ValueTexts texts(1, -999);
      CsvSeries csv(output, texts, {1901, 1901}, wide);
      csv.write(place, series);
      csv.write(place, series);
      output.complete();
      const std::string text = wide ? text_wide + "\n" : text_long;
      EXPECT_TRUE(testing::file_content("x.csv") == text + text) << size << wide;
      std::filesystem::remove("x.csv");
    }
  }
}

TEST(AreaMean, WeightsByTheCosineOfLatitude) {
  AreaMean mean(3, -999);
  const std::vector<std::int16_t> equator{100, -999, -999};
  const std::vector<std::int16_t> sixty{40, 40, -999};
  mean.add(0, equator);  // weight 1
  mean.add(60, sixty);   // weight 0.5
  EXPECT_EQ(mean.cells(0), 2);
  EXPECT_EQ(mean.mean_text(0, 1), "8.000");  // (100 + 20) / 1.5 tenths
  EXPECT_EQ(mean.cells(1), 1);
  EXPECT_EQ(mean.mean_text(1, 1), "4.000");
  EXPECT_EQ(mean.mean_text(1, 2), "0.4000");
  EXPECT_EQ(mean.cells(2), 0);
  EXPECT_EQ(mean.mean_text(2, 1), "");
}

TEST(AreaMean, AZeroHasNoSign) {
  AreaMean mean(1, -999);
  mean.add(0, std::vector<std::int16_t>{-1});
  for (int i = 0; i < 99; ++i) {
    mean.add(0, std::vector<std::int16_t>{0});
  }
  EXPECT_EQ(mean.mean_text(0, 1), "-0.001");
  for (int i = 0; i < 900; ++i) {
    mean.add(0, std::vector<std::int16_t>{0});
  }
  EXPECT_EQ(mean.mean_text(0, 1), "0.000");
}

// Two years of frost days; f, probability and adjusted counts from a second program.
TEST(VarianceColumns, TestsInPhysicalUnits) {
  const std::vector<std::int16_t> series{100, 250,  300,  500, 900, 1200, 1100, 800,
                                         600, 400,  200,  150, 90,  260,  310,  480,
                                         950, 1250, 1000, 850, 580, 420,  180,  160};
  EXPECT_EQ(variance_columns(test_variance(series, 12, *find_by_short_name("frs"))),
            "1.0209159,0.96354294,12,12,21,21");
}

TEST(VarianceColumns, LeavesMissingMonthsOutAndSaysNaNWithoutAResult) {
  const std::vector<std::int16_t> missing(24, -999);
  EXPECT_EQ(variance_columns(test_variance(missing, 12, *find_by_short_name("tmp"))),
            "NaN,NaN,0,0,2,2");
  std::vector<std::int16_t> series(24, 0);
  series[20] = -999;
  EXPECT_EQ(variance_columns(test_variance(series, 12, *find_by_short_name("frs"))),
            "NaN,NaN,12,11,2,2");
}

TEST(VarianceColumns, ShowsInfinities) {
  const float infinity = std::numeric_limits<float>::infinity();
  EXPECT_EQ(variance_columns({.f = -infinity,
                              .probability = infinity,
                              .n1 = 1,
                              .n2 = 2,
                              .adjusted_n1 = 3,
                              .adjusted_n2 = 4}),
            "-Inf,Inf,1,2,3,4");
}

TEST(VariableName, KnowsVariablesByShortNameAndFileName) {
  EXPECT_EQ(find_by_short_name("TMP")->menu_number, 2);
  EXPECT_EQ(find_by_short_name("scpdsi")->menu_number, 11);
  EXPECT_EQ(find_by_short_name("xyz"), nullptr);
  EXPECT_EQ(find_by_file_name("x/cru_ts4.09.1901.2024.pre.dat.new")->menu_number, 1);
  EXPECT_EQ(find_by_file_name("/a.tmp.b/scPDSI.3.25.dat.new")->menu_number, 11);
  EXPECT_EQ(find_by_file_name("x.tmp.d/europe.dat"), nullptr);
  EXPECT_EQ(find_by_file_name("mytmp.dat"), nullptr);
  EXPECT_EQ(find_by_file_name("my.tmpl.dat"), nullptr);
  EXPECT_EQ(decimals_of(*find_by_short_name("tmp")), 1);
  EXPECT_EQ(decimals_of(*find_by_short_name("wet")), 2);
}

}  // namespace
}  // namespace veldmark::extract
