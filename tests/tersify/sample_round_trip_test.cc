// The real sample: the condensed copy of the published layout equals the condensed file
// that series_to_grid makes directly.

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "run_in_process.h"
#include "support/series.h"
#include "support/temporary_folder.h"

namespace veldmark::tersify {
namespace {

using veldmark::testing::file_content;
using veldmark::testing::sample_path;
using veldmark::testing::TemporaryFolder;

// Expands the year 1901 of a variable.
void expand(const std::string& variable, const std::string& options) {
  const std::string command = "gzip -dc '" + sample_path(variable) +
                              "' | '" SERIES_TO_GRID_PROGRAM "' --years 1901-1901 " +
                              options + " 2> /dev/null";
  ASSERT_EQ(std::system(command.c_str()), 0) << command;
}

class SampleRoundTrip : public ::testing::TestWithParam<std::string> {};

TEST_P(SampleRoundTrip, TheCondensedCopyIsTheCondensedFile) {
  const TemporaryFolder folder;
  expand(GetParam(), "--published raw");
  expand(GetParam(), "direct");
  ASSERT_EQ(testing::run({"raw"}).status, 0);
  const std::string direct = file_content("direct");
  EXPECT_EQ(direct.size(), 12U * 360 * 3601);
  EXPECT_TRUE(file_content("raw.new") == direct);
  EXPECT_EQ(testing::run({"--check", "raw.new"}, "", {.shape = {.years = 1}}).output,
            "'raw.new': complete: 1 year, 1901\n");
}

// One variable without negative values and one with them.
INSTANTIATE_TEST_SUITE_P(TwoVariables, SampleRoundTrip,
                         ::testing::Values("pre", "tmn"));

TEST(SampleRoundTripOfScpdsi, TouchingMissingCodesAreCondensedToo) {
  const TemporaryFolder folder;
  expand("tmp", "--scpdsi --published raw");
  expand("tmp", "--scpdsi direct");
  ASSERT_EQ(testing::run({"raw"}).status, 0);
  EXPECT_TRUE(file_content("raw.new") == file_content("direct"));
}

}  // namespace
}  // namespace veldmark::tersify
