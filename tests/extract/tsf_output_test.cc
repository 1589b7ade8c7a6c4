#include "extract/tsf_output.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>

#include "catalogue/variable_name.h"
#include "support/temporary_folder.h"
#include "util/failure.h"

namespace veldmark::extract {
namespace {

// "" where the years can be written.
std::string fault_of(const Years& years) {
  const veldmark::testing::TemporaryFolder folder;
  Options options;
  options.format = Format::kTsf;
  options.output = "x";
  const InputFile input{.name = "grid",
                        .entry = *find_by_short_name("tmp"),
                        .file = FileDescriptor(-1),
                        .size = 0,
                        .line_end_size = 1,
                        .years = years};
  std::ostringstream stream;
  const companion::Environment environment{
      .input = -1, .output = stream, .messages = {.stream = stream}};
  const Job job{.options = options,
                .input = input,
                .years = years,
                .command_line = "",
                .environment = environment};
  try {
    write_tsf(job, {}, {});
  } catch (const Failure& failure) {
    EXPECT_TRUE(std::filesystem::is_empty("."));
    return failure.what();
  }
  EXPECT_TRUE(std::filesystem::exists("x.TSF") && std::filesystem::exists("x.XY"));
  return "";
}

TEST(WriteTsf, HoldsAtMost800Years) {
  EXPECT_EQ(fault_of({.first = 1001, .last = 1800}), "");
  EXPECT_EQ(fault_of({.first = 1001, .last = 1801}),
            "tsf holds at most 800 years; choose them with --years");
}

}  // namespace
}  // namespace veldmark::extract
