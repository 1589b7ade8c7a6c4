// Whole sessions on the real CRU TS 4.01 sample: the .TSF must have exactly the values
// of the sample.

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "support/grid_text.h"
#include "support/series.h"
#include "support/session.h"
#include "support/temporary_folder.h"

namespace veldmark::testing {
namespace {

using Answers = std::vector<std::string>;

// Returns the answers of a session with one search, without thinning and variance test.
Answers one_pass(const std::string& menu, const Answers& region, const Answers& years) {
  Answers answers{"RETURN", "RETURN", menu, "RETURN", "RETURN"};
  answers.insert(answers.end(), region.begin(), region.end());
  answers.emplace_back("T");
  answers.insert(answers.end(), years.begin(), years.end());
  for (const char* answer : {"T", "1", "y", "F", "F"}) {
    answers.emplace_back(answer);
  }
  return answers;
}

// Expands the sample of a variable to a regular grid file, as the demo does.
void expand_sample(const std::string& variable, const std::string& options,
                   const std::string& file_name) {
  const std::string command = "gzip -dc '" + sample_path(variable) +
                              "' | '" VELDMARK_SERIES_TO_GRID "' " + options + " '" +
                              file_name + "' 2>/dev/null";
  ASSERT_EQ(std::system(command.c_str()), 0) << command;
}

// Writes a grid file of all years with the real values of the rows first_row..last_row;
// the other lines are empty.
void write_all_years(const std::string& variable, int first_row, int last_row) {
  GridText grid(2016, first_row, last_row, -999);
  for (const auto& [place, values] : sample_series(variable)) {
    const int row = row_of(place);
    if (row < first_row || row > last_row) continue;
    for (int i = 0; i < 1392; ++i) {
      grid.set_value(1901 + i / 12, i % 12 + 1, row, column_of(place),
                     values[static_cast<std::size_t>(i)]);
    }
  }
  write_file(data_file_name(variable), grid.text());
}

TEST(SampleSession, SavesThe71CellsOfTheGlobeExactly) {
  const TemporaryFolder folder;
  expand_sample("tmp", "--years 1901-1910", data_file_name("tmp"));
  const SessionResult result = run_session(
      one_pass("2", {"90.0", "-90.0", "180.0", "-180.0"}, {"1901", "1910"}));
  EXPECT_EQ(result.status, 0);
  EXPECT_NE(result.output.find("     259200 Grids Defined\n"), std::string::npos);
  EXPECT_NE(result.output.find("         71 Grids Selected and Saved\n"),
            std::string::npos);

  SeriesByPlace expected = sample_series("tmp");
  for (auto& [place, values] : expected) {
    values = years_of(values, 1901, 1910);
  }
  EXPECT_EQ(expected.size(), 71U);
  EXPECT_EQ(read_time_series(file_content(data_file_name("tmp") + ".TSF"), 1901),
            expected);
}

// Extracts the 3 x 3 block of the sample's mean temperature from 1901 to `last_year`
// and compares its nine series with the sample.
void expect_yukon_block(const std::string& menu, const std::string& data_file,
                        int last_year) {
  const SessionResult result = run_session(one_pass(
      menu, {"61.5", "60.0", "-138.5", "-140.0"}, {"1901", std::to_string(last_year)}));
  EXPECT_EQ(result.status, 0);
  const SeriesByPlace saved = read_time_series(file_content(data_file + ".TSF"), 1901);
  EXPECT_EQ(saved.size(), 9U);
  const SeriesByPlace sample = sample_series("tmp");
  for (const auto& [place, values] : saved) {
    EXPECT_EQ(values, years_of(sample.at(place), 1901, last_year))
        << place.first << ", " << place.second;
  }
}

TEST(SampleSession, SavesTheYukonBlockForAllYears) {
  const TemporaryFolder folder;
  write_all_years("tmp", 301, 303);
  expect_yukon_block("2", data_file_name("tmp"), 2016);
}

TEST(SampleSession, ReadsTheDroughtIndexRowOrderFromNorthToSouth) {
  const TemporaryFolder folder;
  expand_sample("tmp", "--years 1901-1901 --scpdsi", data_file_name("scPDSI"));
  expect_yukon_block("11", data_file_name("scPDSI"), 1901);
}

}  // namespace
}  // namespace veldmark::testing
