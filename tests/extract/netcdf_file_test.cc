#include "extract/netcdf_file.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <functional>
#include <string>

#include "support/temporary_folder.h"
#include "util/failure.h"

namespace veldmark::extract {
namespace {

using veldmark::testing::TemporaryFolder;

// A refusal of the library is reported, and no file is left.
TEST(NetcdfFile, ARefusalIsAFailureWithTheLibrarysReason) {
  const TemporaryFolder folder;
  const auto fault_of = [](const std::function<void(NetcdfFile&)>& use) {
    try {
      NetcdfFile file("x.nc", PartFile::IfExists::kReplace);
      use(file);
      file.complete();
    } catch (const Failure& failure) {
      EXPECT_TRUE(std::filesystem::is_empty("."));
      return std::string(failure.what());
    }
    std::filesystem::remove("x.nc");
    return std::string();
  };
  EXPECT_EQ(fault_of([](NetcdfFile& file) { file.add_dimension("site", 1); }), "");
  EXPECT_EQ(fault_of([](NetcdfFile& file) {
              file.add_dimension("site", 1);
              file.add_dimension("site", 2);
            }),
            "cannot write 'x.nc': NetCDF: String match to name in use");
  EXPECT_EQ(fault_of([](NetcdfFile& file) { file.add_text(7, "units", "km"); }),
            "cannot write 'x.nc': NetCDF: Variable not found");
  EXPECT_EQ(fault_of([](NetcdfFile& file) { file.add_text(7, "units", ""); }), "");
  EXPECT_EQ(fault_of([](NetcdfFile& file) {
              file.add_variable("tmp", NetcdfFile::Type::kShort, std::array{3});
            }),
            "cannot write 'x.nc': NetCDF: Invalid dimension ID or name");
}

}  // namespace
}  // namespace veldmark::extract
