#include "catalogue/grid_file.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "console/run_end.h"
#include "support/report_of.h"
#include "support/temporary_folder.h"

namespace veldmark {
namespace {

using testing::report_of;
using testing::TemporaryFolder;
using testing::write_file;

std::string report_of_opening(const std::string& name) {
  return report_of([&] { const GridFile file(name); });
}

TEST(GridFile, IsReadFromItsBegin) {
  const TemporaryFolder folder;
  write_file("grid", "0123456789");
  const GridFile file("grid");
  EXPECT_EQ(file.name(), "grid");
  std::array<char, 7> buffer{};
  EXPECT_EQ(file.read(buffer.data(), 7), 7U);
  EXPECT_EQ(std::string(buffer.data(), 7), "0123456");
  EXPECT_EQ(file.read(buffer.data(), 7), 3U);
  EXPECT_EQ(std::string(buffer.data(), 3), "789");
  EXPECT_EQ(file.read(buffer.data(), 7), 0U);
}

TEST(GridFile, IsReadAtAnyPlace) {
  const TemporaryFolder folder;
  write_file("grid", "0123456789");
  const GridFile file("grid");
  std::array<char, 3> buffer{};
  EXPECT_TRUE(file.read_at(4, buffer.data(), 3));
  EXPECT_EQ(std::string(buffer.data(), 3), "456");
  EXPECT_FALSE(file.read_at(8, buffer.data(), 3));
}

TEST(GridFile, HasASizeWhenItIsARegularFile) {
  const TemporaryFolder folder;
  write_file("grid", "0123456789");
  EXPECT_EQ(GridFile("grid").size(), std::int64_t{10});
  write_file("empty", "");
  EXPECT_EQ(GridFile("empty").size(), std::int64_t{0});
  EXPECT_EQ(GridFile("/dev/null").size(), std::nullopt);
}

TEST(GridFile, ThatIsMissingOrAFolderEndsTheRun) {
  const TemporaryFolder folder;
  std::filesystem::create_directory("folder");
  EXPECT_EQ(report_of_opening("missing"),
            "Run-time error:\nCannot open file: missing\n? OPEN(UNIT=13,...\n");
  EXPECT_EQ(report_of_opening("folder"),
            "Run-time error:\nCannot open file: folder\n? OPEN(UNIT=13,...\n");
}

TEST(GridFile, ThatCannotBeReadEndsTheRun) {
  // Nothing is mapped at the memory's begin.
  const GridFile memory("/proc/self/mem");
  std::array<char, 1> buffer{};
  EXPECT_FALSE(memory.read_at(0, buffer.data(), 1));
  try {
    const std::size_t count = memory.read(buffer.data(), 1);
    ADD_FAILURE() << "no end, but " << count;
  } catch (const RunEnd& end) {
    EXPECT_EQ(end.report(),
              "Run-time error:\nCannot read file: /proc/self/mem: Input/output error\n"
              "? READ(UNIT=13,...\n");
  }
}

}  // namespace
}  // namespace veldmark
