// Options that can be combined; command_line_test.cc has those that can't.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "extract/command_line.h"

namespace veldmark::extract {
namespace {

using Words = std::vector<std::string>;

TEST(OptionRules, AcceptAllowedCombinations) {
  const std::vector<Words> commands{
      {"--lat", "1:2", "--lon", "1:2", "--every", "2", "--variance-test", "1950"},
      {"--lon", "1:2", "--area-mean", "--every", "720", "--tsf-rule"},
      {"--cell", "1,2", "--every", "1", "--wide", "--stored"},
      {"--cell", "1,2", "--area-mean", "--format", "csv"},
      {"--cell", "1,2", "--format", "tsf", "-o", "x"},
      {"--cell", "1,2", "--variance-test", "1"},
      {"--sites", "s", "--wide", "--stored", "--every", "1"},
      {"--sites", "s", "--radius", "0.5", "--variance-test", "9999"},
      {"--sites", "s", "-o", "x.nc", "--deflate", "9"},
      {"--every", "2", "--format", "netcdf", "-o", "x", "--deflate", "0"},
      {"--overwrite", "--quiet", "--variable", "pre", "--first-year", "1"},
  };
  for (Words words : commands) {
    words.insert(words.begin(), "tmp");
    EXPECT_NO_THROW(parse_command_line(words)) << ::testing::PrintToString(words);
  }
}

}  // namespace
}  // namespace veldmark::extract
