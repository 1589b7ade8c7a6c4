#include "extract/tsf_output.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <sstream>
#include <string>

#include "catalogue/variable_name.h"
#include "support/temporary_folder.h"
#include "util/failure.h"
#include "util/file_fault.h"

namespace veldmark::extract {
namespace {

// "" where the years can be written, without cells.
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
  } catch (const FileFault& fault) {
    EXPECT_TRUE(std::filesystem::is_empty("."));
    return fault.name();
  }
  EXPECT_TRUE(std::filesystem::exists("x.TSF") && std::filesystem::exists("x.XY"));
  return "";
}

TEST(WriteTsf, HoldsAtMost800Years) {
  EXPECT_EQ(fault_of({.first = 1001, .last = 1800}), "");
  EXPECT_EQ(fault_of({.first = 1001, .last = 1801}),
            "tsf holds at most 800 years; choose them with --years");
}

// Without cells the x.TSF is empty, so that only the x.XY is too large.
TEST(WriteTsf, NoFileAppearsIfTheListCannotBeWritten) {
  struct rlimit before {};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
  const struct rlimit small { 10, before.rlim_max };
  const auto action = std::signal(SIGXFSZ, SIG_IGN);
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
  const std::string fault = fault_of({.first = 1901, .last = 1901});
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
  std::signal(SIGXFSZ, action);
  EXPECT_EQ(fault, "x.XY.part");
}

}  // namespace
}  // namespace veldmark::extract
