#include "tersify/name_list.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "raw_text.h"
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

TEST(NameList, AnOverlongLineIsRefused) {
  const TemporaryFolder folder;
  write_file("grid", std::string(300'000, '1'));
  EXPECT_EQ(failure_of("grid"), "'grid' is no list of file names: line 1 can't be one");
}

TEST(NameList, ADataFileIsRefusedAtItsFirstLine) {
  const TemporaryFolder folder;
  const std::string why = "'grid' is no list of file names: line 1 can't be one";
  write_file("grid",
             testing::repeated(3, testing::raw_line(testing::numbers()) + "\n"));
  EXPECT_EQ(failure_of("grid"), why);
  write_file("grid",
             testing::repeated(3, testing::condensed_line(testing::numbers()) + "\n"));
  EXPECT_EQ(failure_of("grid"), why);
}

TEST(NameList, ANameMayBeAsLongAsTheSystemAllows) {
  const TemporaryFolder folder;
  const std::string part(255, 'x');
  std::string path;
  while (path.size() < 4095) {
    path += part + "/";
  }
  path.resize(4095);
  write_file("list", "a\n" + part + "   \n" + path + "\n");
  EXPECT_EQ(read_name_list("list"), (Names{"a", part, path}));
  write_file("list", "a\n" + part + "x\n");
  EXPECT_EQ(failure_of("list"), "'list' is no list of file names: line 2 can't be one");
  write_file("list", "a\nb\nfolder/" + part + "x\n");
  EXPECT_EQ(failure_of("list"), "'list' is no list of file names: line 3 can't be one");
  write_file("list", path + "/\n");
  EXPECT_EQ(failure_of("list"), "'list' is no list of file names: line 1 can't be one");
}

TEST(NameList, ALineWithANullCharacterIsRefused) {
  const TemporaryFolder folder;
  write_file("list", std::string("a\0b\n", 4));
  EXPECT_EQ(failure_of("list"), "'list' is no list of file names: line 1 can't be one");
}

TEST(NameList, AByteOrderMarkIsSkipped) {
  const TemporaryFolder folder;
  write_file("list",
             "\xef\xbb\xbf"
             "a.dat\n\xef\xbb\xbf"
             "b.dat\n");
  EXPECT_EQ(read_name_list("list"), (Names{"a.dat",
                                           "\xef\xbb\xbf"
                                           "b.dat"}));
}

TEST(NameList, APipeIsReadToItsEnd) {
  const TemporaryFolder folder;
  ASSERT_EQ(::mkfifo("list", 0600), 0);
  std::thread writer([] { write_file("list", "a.dat\nb.dat\n"); });
  EXPECT_EQ(read_name_list("list"), (Names{"a.dat", "b.dat"}));
  writer.join();
}

TEST(NameList, ThereIsOneNameALine) {
  const TemporaryFolder folder;
  write_file("list", "a.dat\nb.dat\n");
  EXPECT_EQ(read_name_list("list"), (Names{"a.dat", "b.dat"}));
}

TEST(NameList, BlankLinesAreSkipped) {
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

TEST(NameList, TheLastLineMayLackItsNewline) {
  const TemporaryFolder folder;
  write_file("list", "a.dat\nb.dat");
  EXPECT_EQ(read_name_list("list"), (Names{"a.dat", "b.dat"}));
}

TEST(NameList, AListWithoutANameIsAFailure) {
  const TemporaryFolder folder;
  write_file("list", "\n \n");
  EXPECT_EQ(failure_of("list"), "the list 'list' names no file");
}

TEST(NameList, AListThatCannotBeReadIsAFailure) {
  const TemporaryFolder folder;
  EXPECT_EQ(failure_of("list"), "cannot read 'list': No such file or directory");
  std::filesystem::create_directory("list");
  EXPECT_EQ(failure_of("list"), "cannot read 'list': Is a directory");
}

}  // namespace
}  // namespace veldmark::tersify
