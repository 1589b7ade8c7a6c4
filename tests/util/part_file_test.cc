#include "util/part_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <iterator>
#include <string>

#include "scratch_folder.h"
#include "util/failure.h"

namespace veldmark {
namespace {

template <typename Action>
void expect_failure(const Action& action, const std::string& message) {
  try {
    action();
    ADD_FAILURE() << "no failure; expected: " << message;
  } catch (const Failure& error) {
    EXPECT_EQ(error.what(), message);
  }
}

TEST(PartFile, TheFileHasItsNameOnlyWhenItIsComplete) {
  const ScratchFolder folder;
  PartFile file(folder.file("grid"));
  file.write("one\n");
  EXPECT_EQ(folder.names(), Names{"grid.part"});
  file.write("two\n");
  file.complete();
  EXPECT_EQ(folder.names(), Names{"grid"});
  EXPECT_EQ(folder.get("grid"), "one\ntwo\n");
  EXPECT_EQ(file.size(), 8);
}

TEST(PartFile, AnEarlierFileIsReplacedOnlyAtTheEnd) {
  const ScratchFolder folder;
  folder.put("grid", "earlier");
  PartFile file(folder.file("grid"));
  file.write("new");
  EXPECT_EQ(folder.get("grid"), "earlier");
  file.complete();
  EXPECT_EQ(folder.get("grid"), "new");
}

TEST(PartFile, AnUnfinishedFileIsRemovedAndTheEarlierOneStays) {
  const ScratchFolder folder;
  folder.put("grid", "earlier");
  { PartFile(folder.file("grid")).write("half"); }
  EXPECT_EQ(folder.names(), Names{"grid"});
  EXPECT_EQ(folder.get("grid"), "earlier");
}

TEST(PartFile, NothingOfAnAbandonedPartIsKept) {
  const ScratchFolder folder;
  folder.put("grid.part", "left by a run that was killed");
  PartFile file(folder.file("grid"));
  file.write("new");
  file.complete();
  EXPECT_EQ(folder.names(), Names{"grid"});
  EXPECT_EQ(folder.get("grid"), "new");
}

TEST(PartFile, OnceCompleteItLeavesTheNextPartAlone) {
  const ScratchFolder folder;
  {
    PartFile file(folder.file("grid"));
    file.complete();
    folder.put("grid.part", "of the next run");
  }
  EXPECT_EQ(folder.names(), (Names{"grid", "grid.part"}));
}

TEST(PartFile, AMissingFolderIsAnError) {
  const ScratchFolder folder;
  const std::string name = folder.file("nowhere/grid");
  expect_failure([&] { PartFile file(name); },
                 "cannot write " + name + ".part: No such file or directory");
}

TEST(PartFile, AFolderIsNotReplaced) {
  const ScratchFolder folder;
  std::filesystem::create_directory(folder.file("grid"));
  expect_failure(
      [&] { PartFile file(folder.file("grid")); },
      "cannot write " + folder.file("grid") + ": it exists and is not a regular file");
  EXPECT_EQ(folder.names(), Names{"grid"});
}

TEST(PartFile, ADeviceIsNotReplaced) {
  expect_failure([] { PartFile file("/dev/null"); },
                 "cannot write /dev/null: it exists and is not a regular file");
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST(PartFile, AFullDiskIsAnErrorAndLeavesNothing) {
  const ScratchFolder folder;
  FileCalls calls = system_file_calls();
  calls.write = [](int, const void*, std::size_t) -> ssize_t {
    errno = ENOSPC;
    return -1;
  };
  expect_failure(
      [&] { PartFile(folder.file("grid"), calls).write("text"); },
      "cannot write " + folder.file("grid") + ".part: No space left on device");
  EXPECT_EQ(folder.names(), Names{});
}

TEST(PartFile, AWriteThatTakesOnlyPartIsContinued) {
  const ScratchFolder folder;
  FileCalls calls = system_file_calls();
  calls.write = [](int descriptor, const void* text, std::size_t size) {
    return ::write(descriptor, text, std::min<std::size_t>(size, 3));
  };
  PartFile file(folder.file("grid"), calls);
  file.write("0123456789");
  file.complete();
  EXPECT_EQ(folder.get("grid"), "0123456789");
  EXPECT_EQ(file.size(), 10);
}

TEST(PartFile, AWriteDisturbedByASignalIsRepeated) {
  const ScratchFolder folder;
  FileCalls calls = system_file_calls();
  calls.write = [](int descriptor, const void* text, std::size_t size) -> ssize_t {
    static bool disturbed = false;
    disturbed = !disturbed;
    errno = EINTR;
    return disturbed ? -1 : ::write(descriptor, text, size);
  };
  PartFile file(folder.file("grid"), calls);
  file.write("text");
  file.complete();
  EXPECT_EQ(folder.get("grid"), "text");
}

// How many files this process has open.
std::ptrdiff_t open_files() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

TEST(PartFile, LeavesNoFileOpenHoweverItEnds) {
  const ScratchFolder folder;
  const std::ptrdiff_t before = open_files();
  { PartFile(folder.file("grid")).write("half"); }
  EXPECT_EQ(open_files(), before);
  PartFile file(folder.file("grid"));
  EXPECT_EQ(open_files(), before + 1);
  file.complete();
  EXPECT_EQ(open_files(), before);
}

TEST(PartFile, ClosesJustOnce) {
  const ScratchFolder folder;
  static int closed = 0;
  FileCalls calls = system_file_calls();
  calls.close = [](int descriptor) {
    ++closed;
    ::close(descriptor);
    errno = EIO;
    return -1;
  };
  const auto complete = [&] { PartFile(folder.file("grid"), calls).complete(); };
  EXPECT_THROW(complete(), Failure);
  EXPECT_EQ(closed, 1);
}

TEST(PartFile, ACloseDisturbedByASignalIsDone) {
  const ScratchFolder folder;
  FileCalls calls = system_file_calls();
  calls.close = [](int descriptor) {
    ::close(descriptor);
    errno = EINTR;
    return -1;
  };
  PartFile file(folder.file("grid"), calls);
  file.write("text");
  file.complete();
  EXPECT_EQ(folder.get("grid"), "text");
}

TEST(PartFile, MayBeReadAndWrittenByAllWhomTheMaskAllows) {
  const ScratchFolder folder;
  const mode_t before = ::umask(0);
  PartFile(folder.file("open to all")).complete();
  ::umask(027);
  PartFile(folder.file("masked")).complete();
  ::umask(before);
  const auto mode_of = [&](const char* name) {
    return static_cast<unsigned>(
        std::filesystem::status(folder.file(name)).permissions());
  };
  EXPECT_EQ(mode_of("open to all"), 0666U);
  EXPECT_EQ(mode_of("masked"), 0640U);
}

TEST(PartFile, IsNotHandedToCommands) {
  const ScratchFolder folder;
  static int flags = 0;
  FileCalls calls = system_file_calls();
  calls.write = [](int descriptor, const void* text, std::size_t size) {
    flags = ::fcntl(descriptor, F_GETFD);
    return ::write(descriptor, text, size);
  };
  PartFile(folder.file("grid"), calls).write("text");
  EXPECT_NE(flags & FD_CLOEXEC, 0);
}

TEST(PartFile, AFailedCloseIsAnErrorAndLeavesNothing) {
  const ScratchFolder folder;
  FileCalls calls = system_file_calls();
  calls.close = [](int descriptor) {
    ::close(descriptor);
    errno = EIO;
    return -1;
  };
  expect_failure(
      [&] {
        PartFile file(folder.file("grid"), calls);
        file.write("text");
        file.complete();
      },
      "cannot write " + folder.file("grid") + ".part: Input/output error");
  EXPECT_EQ(folder.names(), Names{});
}

TEST(PartFile, AFailedRenameIsAnErrorAndLeavesNothing) {
  const ScratchFolder folder;
  FileCalls calls = system_file_calls();
  calls.rename = [](const char*, const char*) {
    errno = EACCES;
    return -1;
  };
  expect_failure(
      [&] {
        PartFile file(folder.file("grid"), calls);
        file.write("text");
        file.complete();
      },
      "cannot write " + folder.file("grid") + ": Permission denied");
  EXPECT_EQ(folder.names(), Names{});
}

}  // namespace
}  // namespace veldmark
