#include "extract/output_names.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/temporary_folder.h"
#include "util/failure.h"

namespace veldmark::extract {
namespace {

using Names = std::vector<std::string>;
using veldmark::testing::TemporaryFolder;
using veldmark::testing::write_file;

Options with_output(const std::string& name, Format format) {
  Options options;
  options.output = name;
  options.format = format;
  return options;
}

std::string fault_of(const Options& options, const companion::Inputs& inputs = {}) {
  try {
    check_outputs(options, inputs);
  } catch (const Failure& failure) {
    return failure.what();
  }
  return "";
}

TEST(OutputNames, AreThoseOfTheFilesThatARunWrites) {
  EXPECT_EQ(output_names({}), Names{});
  EXPECT_EQ(output_title({}), "standard output");
  EXPECT_EQ(output_names(with_output("a/x.nc", Format::kNetcdf)), Names{"a/x.nc"});
  EXPECT_EQ(output_title(with_output("x", Format::kCsv)), "'x'");
  EXPECT_EQ(output_names(with_output("a/x", Format::kTsf)),
            (Names{"a/x.TSF", "a/x.XY"}));
  EXPECT_EQ(output_title(with_output("x", Format::kTsf)), "'x.TSF' and 'x.XY'");
}

TEST(CheckOutputs, LooksAtEveryFile) {
  const TemporaryFolder folder;
  write_file("x.XY", "");
  Options options = with_output("x", Format::kTsf);
  EXPECT_EQ(fault_of({}), "");
  EXPECT_EQ(fault_of(with_output("x", Format::kCsv)), "");
  EXPECT_EQ(fault_of(options), "'x.XY' exists; --overwrite replaces it");
  options.overwrite = true;
  EXPECT_EQ(fault_of(options), "");
  companion::Inputs inputs;
  inputs.add("'table'", regular_file("x.XY"));
  EXPECT_EQ(fault_of(options, inputs),
            "'x.XY' is the same file as 'table'; nothing was written");
}

}  // namespace
}  // namespace veldmark::extract
