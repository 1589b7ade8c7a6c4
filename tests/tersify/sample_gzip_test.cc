// The real sample, compressed: the copies of all ten variables equal the condensed
// files that series_to_grid makes directly.

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

void expect_done(const std::string& command) {
  ASSERT_EQ(std::system((command + " 2> /dev/null").c_str()), 0) << command;
}

// Expands the year 1901 of a variable.
void expand(const std::string& variable, const std::string& options) {
  expect_done("gzip -dc '" + sample_path(variable) +
              "' | '" SERIES_TO_GRID_PROGRAM "' --years 1901-1901 " + options);
}

class SampleRoundTripOfGzip : public ::testing::TestWithParam<std::string> {};

TEST_P(SampleRoundTripOfGzip, TheCopyIsTheCondensedFile) {
  const TemporaryFolder folder;
  expand(GetParam(), "--published raw.dat");
  expand(GetParam(), "direct");
  expect_done("gzip -1 raw.dat");
  const testing::Outcome result =
      testing::run({"raw.dat.gz"}, "", {.shape = {.years = 1}});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.messages, "");
  const std::string direct = file_content("direct");
  EXPECT_EQ(direct.size(), 12U * 360 * 3601);
  EXPECT_TRUE(file_content("raw.dat.new") == direct);
}

INSTANTIATE_TEST_SUITE_P(AllVariables, SampleRoundTripOfGzip,
                         ::testing::Values("cld", "dtr", "frs", "pet", "pre", "tmn",
                                           "tmp", "tmx", "vap", "wet"),
                         [](const auto& instance) { return instance.param; });

TEST(SampleRoundTripOfScpdsiGzip, TouchingMissingCodesAreCondensedToo) {
  const TemporaryFolder folder;
  expand("tmp", "--scpdsi --published raw.dat");
  expand("tmp", "--scpdsi direct");
  expect_done("gzip -1 raw.dat");
  EXPECT_EQ(testing::run({"raw.dat.gz"}).status, 0);
  EXPECT_TRUE(file_content("raw.dat.new") == file_content("direct"));
}

}  // namespace
}  // namespace veldmark::tersify
