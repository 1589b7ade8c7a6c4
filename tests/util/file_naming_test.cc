// The renames of complete files: one that must not replace an existing file, and two
// that both succeed or both fail.

#include "util/file_naming.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <functional>
#include <map>
#include <string>

#include "support/temporary_folder.h"
#include "util/failure.h"
#include "util/part_file.h"

namespace {

// Simulate file systems without link() or renameat2(): unless 0, the call fails with
// this error.
int link_error = 0;
int exchange_error = 0;
// What another program does just before "b" gets its name.
std::function<void()> before_link_to_b;

}  // namespace

// Override the C library's functions.
extern "C" int link(const char* from, const char* to) noexcept {
  if (link_error != 0) {
    errno = link_error;
    return -1;
  }
  if (before_link_to_b && std::string(to) == "b") {
    before_link_to_b();
  }
  return static_cast<int>(::syscall(SYS_link, from, to));
}

extern "C" int renameat2(int from_folder, const char* from, int to_folder,
                         const char* to, unsigned flags) noexcept {
  if (exchange_error != 0) {
    errno = exchange_error;
    return -1;
  }
  return static_cast<int>(
      ::syscall(SYS_renameat2, from_folder, from, to_folder, to, flags));
}

namespace veldmark {
namespace {

using testing::folder_content;
using testing::TemporaryFolder;
using testing::write_file;
using Files = std::map<std::string, std::string>;
using IfExists = PartFile::IfExists;

class FileNaming : public ::testing::Test {
 protected:
  ~FileNaming() override {
    link_error = 0;
    exchange_error = 0;
    before_link_to_b = nullptr;
  }

  TemporaryFolder folder_;
};

TEST_F(FileNaming, RenamesToAnUnusedName) {
  for (const int error : {0, EPERM, EOPNOTSUPP, ENOSYS}) {
    link_error = error;
    write_file("a", "mine");
    EXPECT_TRUE(rename_to_free_name("a", "b")) << error;
    EXPECT_EQ(folder_content(), (Files{{"b", "mine"}})) << error;
    std::filesystem::remove("b");
  }
}

TEST_F(FileNaming, DoesNotReplaceAnExistingFile) {
  for (const int error : {0, EPERM, EOPNOTSUPP, ENOSYS}) {
    link_error = error;
    write_file("a", "mine");
    write_file("b", "theirs");
    EXPECT_FALSE(rename_to_free_name("a", "b"));
    EXPECT_EQ(errno, EEXIST) << error;
    EXPECT_EQ(folder_content(), (Files{{"a", "mine"}, {"b", "theirs"}})) << error;
    std::filesystem::remove("b");
    std::filesystem::create_symlink("nowhere", "b");
    EXPECT_FALSE(rename_to_free_name("a", "b"));
    EXPECT_EQ(errno, EEXIST) << error;
    EXPECT_TRUE(std::filesystem::is_symlink("b")) << error;
    std::filesystem::remove("b");
  }
}

TEST_F(FileNaming, DoesNotRenameToANameThatCannotBeLookedUp) {
  link_error = EPERM;
  write_file("a", "mine");
  write_file("b", "theirs");
  EXPECT_FALSE(rename_to_free_name("a", "b/c"));
  EXPECT_EQ(errno, EEXIST);
  EXPECT_EQ(folder_content(), (Files{{"a", "mine"}, {"b", "theirs"}}));
}

TEST_F(FileNaming, OtherErrorsOfLinkFail) {
  link_error = EIO;
  write_file("a", "mine");
  EXPECT_FALSE(rename_to_free_name("a", "b"));
  EXPECT_EQ(errno, EIO);
  EXPECT_EQ(folder_content(), (Files{{"a", "mine"}}));
}

TEST_F(FileNaming, TwoFilesExchangeTheirNames) {
  write_file("a", "one");
  write_file("b", "two");
  EXPECT_TRUE(exchange_names("a", "b"));
  EXPECT_EQ(folder_content(), (Files{{"a", "two"}, {"b", "one"}}));
  EXPECT_FALSE(exchange_names("a", "c"));
  EXPECT_EQ(folder_content(), (Files{{"a", "two"}, {"b", "one"}}));
}

TEST_F(FileNaming, KeepsAFileThatAppearsMeanwhile) {
  PartFile file("grid", IfExists::kKeep);
  file.write("new");
  write_file("grid", "appeared meanwhile");
  try {
    file.complete();
    ADD_FAILURE();
  } catch (const Failure& failure) {
    EXPECT_STREQ(failure.what(),
                 "cannot write 'grid': another file has got this name meanwhile");
  }
  EXPECT_EQ(folder_content(),
            (Files{{"grid", "appeared meanwhile"}, {"grid.part", "new"}}));
}

TEST_F(FileNaming, ReportsOtherErrors) {
  PartFile file("grid", IfExists::kKeep);
  link_error = EMLINK;
  try {
    file.complete();
    ADD_FAILURE();
  } catch (const Failure& failure) {
    EXPECT_STREQ(failure.what(), "cannot write 'grid': Too many links");
  }
}

// Writes two files that belong together, and calls `before_naming` when both are
// written, before the renames. Returns the message of a failure.
template <typename Action>
std::string write_both(IfExists if_exists, Action before_naming) {
  PartFile first("a", if_exists);
  PartFile second("b", if_exists);
  first.write("new a");
  second.write("new b");
  before_naming();
  try {
    PartFile::complete_both(first, second);
  } catch (const Failure& failure) {
    return failure.what();
  }
  return "";
}

void do_nothing() {}

TEST_F(FileNaming, TwoPartsGetTheirNames) {
  for (const IfExists if_exists : {IfExists::kKeep, IfExists::kReplace}) {
    EXPECT_EQ(write_both(if_exists, do_nothing), "");
    EXPECT_EQ(folder_content(), (Files{{"a", "new a"}, {"b", "new b"}}));
    std::filesystem::remove("a");
    std::filesystem::remove("b");
  }
}

TEST_F(FileNaming, TwoPartsReplaceEarlierFiles) {
  for (const int error : {0, EINVAL, ENOSYS}) {
    exchange_error = error;
    write_file("a", "old a");
    write_file("b", "old b");
    EXPECT_EQ(write_both(IfExists::kReplace, do_nothing), "");
    EXPECT_EQ(folder_content(), (Files{{"a", "new a"}, {"b", "new b"}})) << error;
  }
}

TEST_F(FileNaming, AReplacedPartIsFoundBeforeTheFirstRename) {
  for (const std::string name : {"a", "b"}) {
    write_file("a", "old a");
    EXPECT_EQ(write_both(IfExists::kReplace,
                         [&] {
                           std::filesystem::remove(name + ".part");
                           write_file(name + ".part", "theirs");
                         }),
              "cannot write '" + name + "': '" + name +
                  ".part' was removed or replaced meanwhile");
    EXPECT_EQ(folder_content(), (Files{{"a", "old a"}, {name + ".part", "theirs"}}));
    std::filesystem::remove(name + ".part");
  }
}

TEST_F(FileNaming, IfTheSecondRenameFailsTheFirstIsUndone) {
  EXPECT_EQ(write_both(IfExists::kKeep, [] { write_file("b", "theirs"); }),
            "cannot write 'b': another file has got this name meanwhile");
  EXPECT_EQ(folder_content(), (Files{{"b", "theirs"}}));
  std::filesystem::remove("b");
  EXPECT_EQ(
      write_both(IfExists::kReplace, [] { std::filesystem::create_directory("b"); }),
      "cannot write 'b': Is a directory");
  EXPECT_EQ(folder_content(), (Files{{"b", ""}}));
}

TEST_F(FileNaming, ARenameIsNotUndoneIfTheNameBelongsToAnotherFile) {
  before_link_to_b = [] {
    std::filesystem::remove("a");
    write_file("a", "their a");
    write_file("b", "their b");
  };
  EXPECT_EQ(write_both(IfExists::kKeep, do_nothing),
            "cannot write 'b': another file has got this name meanwhile");
  EXPECT_EQ(folder_content(), (Files{{"a", "their a"}, {"b", "their b"}}));
}

TEST_F(FileNaming, IfTheSecondRenameFailsExistingFilesStay) {
  write_file("a", "old a");
  EXPECT_EQ(
      write_both(IfExists::kReplace, [] { std::filesystem::create_directory("b"); }),
      "cannot write 'b': Is a directory");
  EXPECT_EQ(folder_content(), (Files{{"a", "old a"}, {"b", ""}}));
}

TEST_F(FileNaming, IfTheFirstRenameFailsTheSecondIsNotDone) {
  EXPECT_EQ(
      write_both(IfExists::kReplace, [] { std::filesystem::create_directory("a"); }),
      "cannot write 'a': Is a directory");
  EXPECT_EQ(folder_content(), (Files{{"a", ""}}));
}

TEST_F(FileNaming, ReportsAFirstRenameThatCannotBeUndone) {
  exchange_error = EINVAL;
  write_file("a", "old a");
  EXPECT_EQ(
      write_both(IfExists::kReplace, [] { std::filesystem::create_directory("b"); }),
      "cannot write 'b': Is a directory; 'a' is the new file already");
  EXPECT_EQ(folder_content(), (Files{{"a", "new a"}, {"b", ""}}));
}

}  // namespace
}  // namespace veldmark
