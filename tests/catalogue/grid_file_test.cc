#include "catalogue/grid_file.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "support/fault_of.h"
#include "support/temporary_folder.h"

namespace veldmark {
namespace {

using testing::fault_of;
using testing::TemporaryFolder;
using testing::write_file;

std::string fault_of_opening(const std::string& name) {
  return fault_of([&] { const GridFile file(name); });
}

TEST(GridFile, IsReadFromItsStart) {
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

TEST(GridFile, IsReadAtAnyOffset) {
  const TemporaryFolder folder;
  write_file("grid", "0123456789");
  const GridFile file("grid");
  std::array<char, 3> buffer{};
  EXPECT_TRUE(file.read_at(4, buffer.data(), 3));
  EXPECT_EQ(std::string(buffer.data(), 3), "456");
  EXPECT_FALSE(file.read_at(8, buffer.data(), 3));
}

TEST(GridFile, HasASizeIfItIsARegularFile) {
  const TemporaryFolder folder;
  write_file("grid", "0123456789");
  EXPECT_EQ(GridFile("grid").size(), 10);
  write_file("empty", "");
  EXPECT_EQ(GridFile("empty").size(), 0);
  EXPECT_EQ(GridFile("/dev/null").size(), 0);
}

TEST(GridFile, ThrowsIfItIsMissingOrAFolder) {
  const TemporaryFolder folder;
  std::filesystem::create_directory("folder");
  EXPECT_EQ(fault_of_opening("missing"),
            "not opened: missing: No such file or directory");
  EXPECT_EQ(fault_of_opening("folder"), "not opened: folder: Is a directory");
}

TEST(GridFile, ThrowsIfItCannotBeRead) {
  // No memory is mapped at address 0, so reading there fails.
  const GridFile memory("/proc/self/mem");
  std::array<char, 1> buffer{};
  EXPECT_FALSE(memory.read_at(0, buffer.data(), 1));
  EXPECT_EQ(fault_of([&] {
              [[maybe_unused]] const std::size_t count = memory.read(buffer.data(), 1);
            }),
            "not read: /proc/self/mem: Input/output error");
}

}  // namespace
}  // namespace veldmark
