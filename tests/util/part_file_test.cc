#include "util/part_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <iterator>
#include <map>
#include <string>

#include "support/as_nobody.h"
#include "support/temporary_folder.h"
#include "util/failure.h"
#include "util/file_descriptor.h"
#include "util/file_lock.h"
#include "util/interrupt_watch.h"
#include "util/on_disk.h"

namespace veldmark {
namespace {

using testing::AsNobody;
using testing::file_content;
using testing::folder_content;
using testing::TemporaryFolder;
using testing::write_file;
using Files = std::map<std::string, std::string>;

void expect_failure(const std::function<void()>& action, const std::string& message) {
  try {
    action();
    ADD_FAILURE() << "no failure; expected: " << message;
  } catch (const Failure& error) {
    EXPECT_EQ(error.what(), message);
  }
}

// Writes a complete file.
void make(const std::string& name, const std::string& content) {
  PartFile file(name);
  file.write(content);
  file.complete();
}

struct stat status_of(const char* name) {
  struct stat found {};
  EXPECT_EQ(::lstat(name, &found), 0) << name;
  return found;
}

TEST(PartFile, TheFileGetsItsNameOnlyWhenItIsComplete) {
  const TemporaryFolder folder;
  PartFile file("grid");
  file.write("one\n");
  EXPECT_EQ(folder_content(), (Files{{"grid.part", "one\n"}}));
  file.write("two\n");
  file.complete();
  EXPECT_EQ(folder_content(), (Files{{"grid", "one\ntwo\n"}}));
  EXPECT_EQ(file.size(), 8);
}

TEST(PartFile, AnEarlierFileIsReplacedOnlyAtTheEnd) {
  const TemporaryFolder folder;
  write_file("grid", "earlier");
  PartFile file("grid");
  file.write("new");
  EXPECT_EQ(file_content("grid"), "earlier");
  file.complete();
  EXPECT_EQ(file_content("grid"), "new");
}

TEST(PartFile, AnUnfinishedFileIsRemovedAndTheEarlierOneStays) {
  const TemporaryFolder folder;
  write_file("grid", "earlier");
  { PartFile("grid").write("half"); }
  EXPECT_EQ(folder_content(), (Files{{"grid", "earlier"}}));
}

TEST(PartFile, WithoutWaitingForTheDiskItIsTheSame) {
  const TemporaryFolder folder;
  write_file("grid", "earlier");
  PartFile file("grid");
  file.write("new");
  file.complete(PartFile::Durability::kUnsynced);
  EXPECT_EQ(folder_content(), (Files{{"grid", "new"}}));
  EXPECT_EQ(PartFile("grid").size(), 0);  // the lock went with the name
}

TEST(PartFile, APartThatIsGoneIsNotCompletedUnsyncedEither) {
  const TemporaryFolder folder;
  PartFile file("grid");
  std::filesystem::remove("grid.part");
  expect_failure([&] { file.complete(PartFile::Durability::kUnsynced); },
                 "cannot write 'grid': 'grid.part' was removed or replaced meanwhile");
  EXPECT_EQ(folder_content(), Files{});
}

TEST(PartFile, AFileInAnotherFolderIsMadeThere) {
  const TemporaryFolder folder;
  std::filesystem::create_directory("data");
  make("data/grid", "new");
  EXPECT_EQ(file_content("data/grid"), "new");
}

TEST(PartFile, AnAbandonedPartIsReplaced) {
  const TemporaryFolder folder;
  write_file("grid.part", "left by a run that was killed");
  make("grid", "new");
  EXPECT_EQ(folder_content(), (Files{{"grid", "new"}}));
}

TEST(PartFile, OnceCompleteItDoesNotRemoveTheNextPart) {
  const TemporaryFolder folder;
  {
    PartFile file("grid");
    file.complete();
    write_file("grid.part", "of the next run");
  }
  EXPECT_EQ(folder_content(), (Files{{"grid", ""}, {"grid.part", "of the next run"}}));
}

// --- Another file in place of the part

TEST(PartFile, TheTargetOfASymbolicLinkIsNotOverwritten) {
  const TemporaryFolder folder;
  write_file("thesis", "years of work");
  std::filesystem::create_symlink("thesis", "grid.part");
  make("grid", "new");
  EXPECT_EQ(folder_content(), (Files{{"grid", "new"}, {"thesis", "years of work"}}));
  EXPECT_TRUE(S_ISREG(status_of("grid").st_mode));
}

TEST(PartFile, TheTargetOfAHardLinkIsNotOverwritten) {
  const TemporaryFolder folder;
  write_file("thesis", "years of work");
  std::filesystem::create_hard_link("thesis", "grid.part");
  make("grid", "new");
  EXPECT_EQ(folder_content(), (Files{{"grid", "new"}, {"thesis", "years of work"}}));
}

TEST(PartFile, AFailedRunLeavesTheTargetUnchanged) {
  const TemporaryFolder folder;
  write_file("thesis", "years of work");
  std::filesystem::create_symlink("thesis", "grid.part");
  { PartFile("grid").write("half"); }
  EXPECT_EQ(folder_content(), (Files{{"thesis", "years of work"}}));
}

TEST(PartFile, ALinkToADeviceIsReplacedByTheFile) {
  const TemporaryFolder folder;
  std::filesystem::create_symlink("/dev/null", "grid.part");
  make("grid", "new");
  EXPECT_TRUE(S_ISREG(status_of("grid").st_mode));
  EXPECT_EQ(folder_content(), (Files{{"grid", "new"}}));
}

TEST(PartFile, APipeInPlaceOfThePartDoesNotBlock) {
  const TemporaryFolder folder;
  ASSERT_EQ(::mkfifo("grid.part", 0600), 0);
  ::alarm(20);  // ends the tests where it does
  make("grid", "new");
  ::alarm(0);
  EXPECT_EQ(folder_content(), (Files{{"grid", "new"}}));
}

TEST(PartFile, ThePermissionsOfAnAbandonedPartAreNotInherited) {
  const TemporaryFolder folder;
  write_file("grid.part", "left");
  ASSERT_EQ(::chmod("grid.part", 06777), 0);
  const bool is_root = ::geteuid() == 0;
  if (is_root) {
    ASSERT_EQ(::chown("grid.part", 65534, 65534), 0);
    ASSERT_EQ(::chmod("grid.part", 06777), 0);
  }
  const mode_t before = ::umask(022);
  make("grid", "new");
  ::umask(before);
  EXPECT_EQ(status_of("grid").st_mode & 07777U, 0644U);
  EXPECT_EQ(status_of("grid").st_uid, ::geteuid());
}

TEST(PartFile, AProtectedPartDoesNotBlockAllLaterRuns) {
  const TemporaryFolder folder;
  ASSERT_EQ(::chmod(".", 0777), 0);
  const AsNobody nobody;
  write_file("grid.part", "left");
  ASSERT_EQ(::chmod("grid.part", 0400), 0);
  make("grid", "new");
  EXPECT_EQ(file_content("grid"), "new");
}

TEST(PartFile, AProtectedPartThatIsBeingWrittenIsNotRemoved) {
  const TemporaryFolder folder;
  ASSERT_EQ(::chmod(".", 0777), 0);
  const AsNobody nobody;
  PartFile file("grid");
  file.write("of the first run");
  ASSERT_EQ(::chmod("grid.part", 0400), 0);
  expect_failure([] { const PartFile second("grid"); },
                 "cannot write 'grid': another run is writing it");
  file.complete();
  EXPECT_EQ(file_content("grid"), "of the first run");
}

TEST(PartFile, AnOwnPartThatCannotBeOpenedDoesNotBlockLaterRuns) {
  const TemporaryFolder folder;
  ASSERT_EQ(::chmod(".", 0777), 0);
  const AsNobody nobody;
  write_file("grid.part", "left");
  ASSERT_EQ(::chmod("grid.part", 0), 0);
  make("grid", "new");
  EXPECT_EQ(file_content("grid"), "new");
}

TEST(PartFile, APartThatAnotherUserMayBeWritingIsNotRemoved) {
  if (::geteuid() != 0) {
    GTEST_SKIP() << "needs two users";
  }
  const TemporaryFolder folder;
  ASSERT_EQ(::chmod(".", 0777), 0);
  PartFile file("grid");
  file.write("of the first run");
  ASSERT_EQ(::chmod("grid.part", 0600), 0);
  {
    const AsNobody nobody;
    expect_failure([] { make("grid", "of the second run"); },
                   "cannot write 'grid.part': Permission denied");
  }
  file.complete();
  EXPECT_EQ(file_content("grid"), "of the first run");
}

TEST(PartFile, AFolderInPlaceOfThePartIsNotRemoved) {
  const TemporaryFolder folder;
  std::filesystem::create_directory("grid.part");
  expect_failure([] { PartFile file("grid"); },
                 "cannot write 'grid.part': Is a directory");
  EXPECT_TRUE(std::filesystem::is_directory("grid.part"));
}

// --- Two runs with the same output

// Another process, which is in the middle of writing "grid".
class AnotherRun {
 public:
  AnotherRun() {
    EXPECT_EQ(::pipe2(begun_.data(), O_CLOEXEC), 0);
    EXPECT_EQ(::pipe2(go_on_.data(), O_CLOEXEC), 0);
    child_ = ::fork();
    if (child_ == 0) {
      ::_exit(write_grid());
    }
    ::close(begun_[1]);
    ::close(go_on_[0]);
    char byte = 0;
    EXPECT_EQ(::read(begun_[0], &byte, 1), 1);
  }

  // Lets the process finish. Returns its exit status, 0 if it has completed its file.
  int end() {
    ::close(go_on_[1]);
    ::close(begun_[0]);
    int status = -1;
    ::waitpid(child_, &status, 0);
    return status;
  }

 private:
  int write_grid() {
    ::close(go_on_[1]);
    try {
      PartFile file("grid");
      file.write("of the ");
      char byte = 0;
      if (::write(begun_[1], &byte, 1) != 1 || ::read(go_on_[0], &byte, 1) != 0) {
        return 2;
      }
      file.write("first run");
      file.complete();
      return 0;
    } catch (const Failure&) {
      return 1;
    }
  }

  std::array<int, 2> begun_{};
  std::array<int, 2> go_on_{};
  pid_t child_ = -1;
};

TEST(TwoRuns, TheSecondOneFailsAndDoesNoHarm) {
  const TemporaryFolder folder;
  write_file("grid", "earlier");
  AnotherRun first;
  expect_failure([] { PartFile file("grid"); },
                 "cannot write 'grid': another run is writing it");
  EXPECT_EQ(folder_content(), (Files{{"grid", "earlier"}, {"grid.part", "of the "}}));
  EXPECT_EQ(first.end(), 0);
  EXPECT_EQ(folder_content(), (Files{{"grid", "of the first run"}}));
}

TEST(TwoRuns, BothWriteIfTheyFollowEachOther) {
  const TemporaryFolder folder;
  AnotherRun first;
  EXPECT_EQ(first.end(), 0);
  make("grid", "of the second run");
  EXPECT_EQ(folder_content(), (Files{{"grid", "of the second run"}}));
}

TEST(TwoRuns, OnDifferentOutputsDoNotDisturbEachOther) {
  const TemporaryFolder folder;
  AnotherRun first;
  make("other", "of the second run");
  EXPECT_EQ(first.end(), 0);
  EXPECT_EQ(folder_content(),
            (Files{{"grid", "of the first run"}, {"other", "of the second run"}}));
}

TEST(PartFile, AnotherWriterMayLockAndWriteItAfterReleaseLock) {
  const TemporaryFolder folder;
  PartFile file("grid");
  file.release_lock();
  FileDescriptor other("grid.part", O_WRONLY);
  EXPECT_FALSE(is_locked_by_another(other));
  EXPECT_TRUE(other.write_all("of a library"));
  EXPECT_TRUE(other.close());
  file.complete();
  EXPECT_EQ(folder_content(), (Files{{"grid", "of a library"}}));
}

TEST(PartFile, APartThatWasReplacedIsNotCompleted) {
  const TemporaryFolder folder;
  write_file("grid", "earlier");
  {
    PartFile file("grid");
    file.write("new");
    std::filesystem::rename("grid.part", "moved");
    write_file("grid.part", "hello");
    expect_failure(
        [&] { file.complete(); },
        "cannot write 'grid': 'grid.part' was removed or replaced meanwhile");
  }
  EXPECT_EQ(folder_content(),
            (Files{{"grid", "earlier"}, {"grid.part", "hello"}, {"moved", "new"}}));
}

TEST(PartFile, APartThatWasRemovedIsNotCompleted) {
  const TemporaryFolder folder;
  PartFile file("grid");
  std::filesystem::remove("grid.part");
  expect_failure([&] { file.complete(); },
                 "cannot write 'grid': 'grid.part' was removed or replaced meanwhile");
  EXPECT_EQ(folder_content(), Files{});
}

TEST(PartFile, APartThatWasReplacedByALinkToItIsNotCompleted) {
  const TemporaryFolder folder;
  PartFile file("grid");
  std::filesystem::rename("grid.part", "moved");
  std::filesystem::create_symlink("moved", "grid.part");
  EXPECT_THROW(file.complete(), Failure);
  EXPECT_FALSE(std::filesystem::exists("grid"));
}

// --- Signals

TEST(PartFile, ASignalBeforeOpeningEndsIt) {
  const TemporaryFolder folder;
  write_file("grid.part", "left");
  const InterruptWatch watch;
  std::raise(SIGTERM);
  try {
    PartFile file("grid");
    ADD_FAILURE() << "opened";
  } catch (const Interrupted& interrupted) {
    EXPECT_EQ(interrupted.signal, SIGTERM);
  }
  EXPECT_EQ(folder_content(), (Files{{"grid.part", "left"}}));
}

TEST(PartFile, ASignalBeforeTheRenameLeavesNothing) {
  for (const auto durability :
       {PartFile::Durability::kSynced, PartFile::Durability::kUnsynced}) {
    const TemporaryFolder folder;
    write_file("grid", "earlier");
    const InterruptWatch watch;
    {
      PartFile file("grid");
      file.write("all of it");
      std::raise(SIGINT);
      EXPECT_THROW(file.complete(durability), Interrupted);
    }
    EXPECT_EQ(folder_content(), (Files{{"grid", "earlier"}}));
  }
}

TEST(PartFile, ASignalPreventsTheSyncToDisk) {
  const InterruptWatch watch;
  std::raise(SIGTERM);
  EXPECT_THROW(sync_to_disk(FileDescriptor(-1)), Interrupted);
}

// --- Failures

TEST(PartFile, AMissingFolderIsAnError) {
  const TemporaryFolder folder;
  expect_failure([] { PartFile file("nowhere/grid"); },
                 "cannot write 'nowhere/grid.part': No such file or directory");
}

TEST(PartFile, AFolderIsNotReplaced) {
  const TemporaryFolder folder;
  std::filesystem::create_directory("grid");
  expect_failure([] { PartFile file("grid"); },
                 "cannot write 'grid': it exists and is not a regular file");
  EXPECT_EQ(folder_content(), (Files{{"grid", ""}}));
}

TEST(PartFile, ADeviceIsNotReplaced) {
  expect_failure([] { PartFile file("/dev/null"); },
                 "cannot write '/dev/null': it exists and is not a regular file");
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST(PartFile, AFileSizeLimitIsAnErrorAndLeavesNothing) {
  const TemporaryFolder folder;
  write_file("grid", "earlier");
  const InterruptWatch watch;  // SIGXFSZ is ignored meanwhile
  rlimit before{};
  ::getrlimit(RLIMIT_FSIZE, &before);
  rlimit small = before;
  small.rlim_cur = 10;
  ::setrlimit(RLIMIT_FSIZE, &small);
  std::string message;
  try {
    PartFile("grid").write("12 bytes are");
  } catch (const Failure& error) {
    message = error.what();
  }
  ::setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(message, "cannot write 'grid.part': File too large");
  EXPECT_EQ(folder_content(), (Files{{"grid", "earlier"}}));
}

TEST(PartFile, AFailedRenameIsAnErrorAndLeavesNothing) {
  const TemporaryFolder folder;
  {
    PartFile file("grid");
    std::filesystem::create_directory("grid");
    expect_failure([&] { file.complete(); }, "cannot write 'grid': Is a directory");
  }
  EXPECT_EQ(folder_content(), (Files{{"grid", ""}}));
}

// --- Descriptors and permissions

// Returns the number of open descriptors of this process.
std::ptrdiff_t open_files() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

TEST(PartFile, LeavesNoDescriptorOpen) {
  const TemporaryFolder folder;
  const std::ptrdiff_t before = open_files();
  { PartFile("grid").write("half"); }
  EXPECT_EQ(open_files(), before);
  write_file("grid.part", "left");
  PartFile file("grid");
  EXPECT_EQ(open_files(), before + 1);
  file.complete();
  EXPECT_EQ(open_files(), before);
  PartFile first("a");
  PartFile second("b");
  PartFile::complete_both(first, second);
  EXPECT_EQ(open_files(), before);
}

TEST(PartFile, HasTheModeThatTheUmaskAllows) {
  const TemporaryFolder folder;
  const mode_t before = ::umask(0);
  make("open to all", "");
  ::umask(027);
  make("masked", "");
  ::umask(before);
  EXPECT_EQ(status_of("open to all").st_mode & 07777U, 0666U);
  EXPECT_EQ(status_of("masked").st_mode & 07777U, 0640U);
}

TEST(PartFile, IsNotInheritedByCommands) {
  const TemporaryFolder folder;
  const PartFile file("grid");
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code gone;
    const auto target = std::filesystem::read_symlink(entry.path(), gone);
    if (target.filename() == "grid.part") {
      const int descriptor = std::stoi(entry.path().filename().string());
      EXPECT_NE(::fcntl(descriptor, F_GETFD) & FD_CLOEXEC, 0);
      return;
    }
  }
  ADD_FAILURE() << "the part is not open";
}

}  // namespace
}  // namespace veldmark
