// Many searches in one run must not leave any file open.

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <string>

#include "driver/running_program.h"
#include "support/grid_text.h"
#include "support/temporary_folder.h"

namespace veldmark::testing {
namespace {

// Returns a file of 1901 with values in rows 283 and 284. The other lines are full if
// `regular`, otherwise empty.
std::string grid_text(bool regular) {
  GridText grid(1901, regular ? 1 : 283, regular ? 360 : 284, -999);
  for (const int row : {283, 284}) {
    for (int month = 1; month <= 12; ++month) {
      grid.set_value(1901, month, row, 361, 10 * row + month);
    }
  }
  return grid.text();
}

TEST(ManySearches, LeaveNoDescriptorOpen) {
  constexpr int kPasses = 12;
  constexpr rlim_t kDescriptors = 16;
  const TemporaryFolder folder;
  write_file(data_file_name("pre"), grid_text(false));
  write_file(data_file_name("tmp"), grid_text(true));
  std::string answers = "\n\n1\n\n\n52.0\n51.0\n0.5\n0.0\nT\n1901\n1901\nT\n";
  for (int pass = 1; pass <= kPasses; ++pass) {
    answers += "1\ny\nT\n1901\n";  // thinning, and the variance test
    if (pass < kPasses) {
      const char* variable = pass % 2 == 0 ? "1" : "2";  // read in the two ways
      answers += std::string("T\nF\n\n") + variable + "\n\n";
    }
  }
  RunningProgram program([] {
    const rlimit limit{.rlim_cur = kDescriptors, .rlim_max = kDescriptors};
    ::setrlimit(RLIMIT_NOFILE, &limit);
  });
  program.type(answers + "F\n");
  EXPECT_EQ(program.end(), 0);
  EXPECT_EQ(program.errors(), "");
  std::size_t finished = 0;
  const std::string& screen = program.screen();
  for (std::size_t at = screen.find("TERMINATING NORMALLY"); at != std::string::npos;
       at = screen.find("TERMINATING NORMALLY", at + 1)) {
    ++finished;
  }
  EXPECT_EQ(finished, std::size_t{kPasses}) << screen;
}

}  // namespace
}  // namespace veldmark::testing
