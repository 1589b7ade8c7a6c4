#include "companion/inputs.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "support/temporary_folder.h"
#include "util/failure.h"

namespace veldmark::companion {
namespace {

using testing::TemporaryFolder;
using testing::write_file;

// Returns the message about an output; "" if it is not the input "in".
std::string verdict_on(const std::string& output) {
  Inputs inputs;
  inputs.add("'in'", regular_file(std::string("in")));
  try {
    inputs.require_not_an_input(output);
    return "";
  } catch (const Failure& error) {
    return error.what();
  }
}

TEST(Inputs, AnotherFileMayBeWritten) {
  const TemporaryFolder folder;
  write_file("in", "text");
  write_file("out", "text");
  EXPECT_EQ(verdict_on("out"), "");
  EXPECT_EQ(verdict_on("new"), "");
}

TEST(Inputs, AnOutputThatIsAnInputIsRefusedByWhateverName) {
  const TemporaryFolder folder;
  write_file("in", "text");
  std::filesystem::create_symlink("in", "link");
  std::filesystem::create_hard_link("in", "second name");
  EXPECT_EQ(verdict_on("in"), "'in' is the same file as 'in'; nothing was written");
  EXPECT_EQ(verdict_on("./in"), "'./in' is the same file as 'in'; nothing was written");
  EXPECT_EQ(verdict_on("link"), "'link' is the same file as 'in'; nothing was written");
  EXPECT_EQ(verdict_on("second name"),
            "'second name' is the same file as 'in'; nothing was written");
}

TEST(Inputs, APartThatIsAnInputIsRefused) {
  const TemporaryFolder folder;
  write_file("in", "text");
  std::filesystem::create_hard_link("in", "out.part");
  EXPECT_EQ(verdict_on("out"),
            "'out.part' is the same file as 'in'; nothing was written");
}

TEST(Inputs, WhatIsNotThereIsNoInput) {
  const TemporaryFolder folder;
  EXPECT_EQ(verdict_on("out"), "");
}

}  // namespace
}  // namespace veldmark::companion
