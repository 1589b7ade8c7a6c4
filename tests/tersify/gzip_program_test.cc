// The built program on compressed files, stopped while it works.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "compressed.h"
#include "raw_text.h"
#include "support/child_process.h"
#include "support/temporary_folder.h"

namespace veldmark::tersify {
namespace {

using testing::compressed;
using testing::condensed_line;
using testing::numbers;
using testing::raw_line;
using testing::repeated;
using veldmark::testing::ChildProcess;
using veldmark::testing::file_content;
using veldmark::testing::TemporaryFolder;
using veldmark::testing::with_stopped_process;
using veldmark::testing::write_file;

// Long enough to stop the program while it works.
constexpr int kLines = 36000;
constexpr int kMembers = 10;

void make_big_file() {
  const std::string raw = raw_line(numbers()) + "\n";
  write_file("big.gz",
             repeated(kMembers, compressed(repeated(kLines / kMembers, raw))));
}

void expect_whole_copy() {
  const std::string condensed = condensed_line(numbers()) + "\n";
  EXPECT_TRUE(file_content("big.new") == repeated(kLines, condensed));
  EXPECT_FALSE(std::filesystem::exists("big.new.part"));
}

TEST(TersifyProgramOnGzip, KilledInTheMiddleItLeavesNothingThatLooksComplete) {
  const TemporaryFolder folder;
  make_big_file();
  with_stopped_process({TERSIFY_PROGRAM, "big.gz"}, "big.new.part",
                       [](ChildProcess& run) {
                         run.send(SIGKILL);
                         EXPECT_EQ(run.wait(), -SIGKILL);
                       });
  EXPECT_FALSE(std::filesystem::exists("big.new"));
  EXPECT_TRUE(std::filesystem::exists("big.new.part"));
  EXPECT_EQ(WEXITSTATUS(std::system("'" TERSIFY_PROGRAM "' big.gz > output 2>&1")), 0);
  expect_whole_copy();
}

TEST(TersifyProgramOnGzip, ARequestToTerminateLeavesNothing) {
  const TemporaryFolder folder;
  make_big_file();
  write_file("big.new", "earlier");
  with_stopped_process({TERSIFY_PROGRAM, "big.gz"}, "big.new.part",
                       [](ChildProcess& run) {
                         run.send(SIGTERM);
                         run.send(SIGCONT);
                         EXPECT_EQ(run.wait(), 128 + SIGTERM);
                       });
  EXPECT_EQ(file_content("messages"),
            "tersify: interrupted\ntersify: not condensed: 'big.gz'\n");
  EXPECT_EQ(file_content("big.new"), "earlier");
  EXPECT_FALSE(std::filesystem::exists("big.new.part"));
}

// Begins like netCDF; long enough to stop the program while it works.
void make_big_netcdf() {
  write_file("big.nc.gz", compressed("CDF\x01" + std::string(9'000'000, 'x')) +
                              repeated(20, compressed(std::string(9'000'000, 'x'))));
}

TEST(TersifyProgramOnGzip, KilledWhileItDecompressesNetcdfItLeavesNoCopy) {
  const TemporaryFolder folder;
  make_big_netcdf();
  with_stopped_process({TERSIFY_PROGRAM, "big.nc.gz"}, "big.new.nc.part",
                       [](ChildProcess& run) {
                         run.send(SIGKILL);
                         EXPECT_EQ(run.wait(), -SIGKILL);
                       });
  EXPECT_FALSE(std::filesystem::exists("big.new"));
  EXPECT_FALSE(std::filesystem::exists("big.new.part"));
  EXPECT_TRUE(std::filesystem::exists("big.new.nc.part"));
}

TEST(TersifyProgramOnGzip, AnInterruptWhileItDecompressesNetcdfLeavesNothing) {
  const TemporaryFolder folder;
  make_big_netcdf();
  with_stopped_process({TERSIFY_PROGRAM, "big.nc.gz"}, "big.new.nc.part",
                       [](ChildProcess& run) {
                         run.send(SIGINT);
                         run.send(SIGCONT);
                         EXPECT_EQ(run.wait(), 128 + SIGINT);
                       });
  EXPECT_EQ(file_content("messages"),
            "tersify: interrupted\ntersify: not condensed: 'big.nc.gz'\n");
  EXPECT_FALSE(std::filesystem::exists("big.new.nc.part"));
}

#if !defined(__SANITIZE_ADDRESS__)  // ASan reserves more address space
// The address-space limit is enough for a block of the text, but not for all of it.
TEST(TersifyProgramOnGzip, ItsMemoryDoesNotGrowWithTheText) {
  const TemporaryFolder folder;
  make_big_file();
  ASSERT_GT(kLines * raw_line(numbers()).size(), 100'000'000U);
  EXPECT_EQ(WEXITSTATUS(std::system("ulimit -v 90112; '" TERSIFY_PROGRAM
                                    "' big.gz > output 2> messages")),
            0)
      << file_content("messages");
  expect_whole_copy();
}
#endif

}  // namespace
}  // namespace veldmark::tersify
