#include "tersify/name_list.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/temporary_folder.h"
#include "util/failure.h"

namespace veldmark::tersify {
namespace {

using veldmark::testing::TemporaryFolder;
using veldmark::testing::write_file;
using Names = std::vector<std::string>;

std::string failure_of(const std::string& name) {
  try {
    read_name_list(name);
    return "no failure";
  } catch (const Failure& error) {
    return error.what();
  }
}

TEST(NameList, WhatHasALineOfAQuarterOfAMegabyteIsNoList) {
  const TemporaryFolder folder;
  write_file("grid", std::string(300'000, '1'));
  EXPECT_EQ(failure_of("grid"), "grid is no list of file names");
}

TEST(NameList, ThereIsOneNameALine) {
  const TemporaryFolder folder;
  write_file("list", "a.dat\nb.dat\n");
  EXPECT_EQ(read_name_list("list"), (Names{"a.dat", "b.dat"}));
}

TEST(NameList, BlankLinesArePassedOver) {
  const TemporaryFolder folder;
  write_file("list", "\n  \na.dat\n\t\r\n\r\nb.dat\n\n");
  EXPECT_EQ(read_name_list("list"), (Names{"a.dat", "b.dat"}));
}

TEST(NameList, BlanksAndACarriageReturnAtTheEndAreDropped) {
  const TemporaryFolder folder;
  write_file("list", "a.dat  \r\nb.dat \t\r\r\nc.dat\r");
  EXPECT_EQ(read_name_list("list"), (Names{"a.dat", "b.dat", "c.dat"}));
}

TEST(NameList, BlanksWithinANameAndBeforeItBelongToIt) {
  const TemporaryFolder folder;
  write_file("list", " my data.dat\n");
  EXPECT_EQ(read_name_list("list"), Names{" my data.dat"});
}

TEST(NameList, TheLastLineMayLackItsLineEnd) {
  const TemporaryFolder folder;
  write_file("list", "a.dat\nb.dat");
  EXPECT_EQ(read_name_list("list"), (Names{"a.dat", "b.dat"}));
}

TEST(NameList, AListWithoutANameIsAFailure) {
  const TemporaryFolder folder;
  write_file("list", "\n \n");
  EXPECT_EQ(failure_of("list"), "the list list names no file");
}

TEST(NameList, AListThatCannotBeReadIsAFailure) {
  const TemporaryFolder folder;
  EXPECT_EQ(failure_of("list"), "cannot read list: No such file or directory");
  std::filesystem::create_directory("list");
  EXPECT_EQ(failure_of("list"), "cannot read list: Is a directory");
}

}  // namespace
}  // namespace veldmark::tersify
