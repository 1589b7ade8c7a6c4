#include "util/without_folders.h"

#include <gtest/gtest.h>

namespace veldmark {
namespace {

TEST(WithoutFolders, IsWhatFollowsTheLastSlash) {
  EXPECT_EQ(without_folders("/data/cru/x.dat"), "x.dat");
  EXPECT_EQ(without_folders("x.dat"), "x.dat");
  EXPECT_EQ(without_folders("data/"), "");
  EXPECT_EQ(without_folders(""), "");
}

}  // namespace
}  // namespace veldmark
