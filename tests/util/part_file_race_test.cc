// Another run that interferes between two system calls of a run that begins to write
// the same file.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "support/as_nobody.h"
#include "support/temporary_folder.h"
#include "util/failure.h"
#include "util/file_descriptor.h"
#include "util/file_lock.h"
#include "util/part_file.h"

namespace {

// What happens once, before the next flock(), or before and after the next open().
struct Interference {
  std::function<void()> before_lock;
  std::function<void()> before_open;
  std::function<void()> after_open;
  std::vector<int> access_modes;  // of all calls of open()
};

// The running test's. Files are opened after the last test, too: counts of coverage.
Interference* interference = nullptr;

void call_once(std::function<void()>& action) {
  if (const std::function<void()> once = std::exchange(action, nullptr)) {
    const int error = errno;
    once();
    errno = error;
  }
}

}  // namespace

// Override the C library's functions. New files get the mode that FileDescriptor asks
// for.
extern "C" int open(const char* name, int flags, ...) {
  if (interference != nullptr) {
    call_once(interference->before_open);
    interference->access_modes.push_back(flags & O_ACCMODE);
  }
  const auto opened =
      static_cast<int>(::syscall(SYS_openat, AT_FDCWD, name, flags, 0666));
  if (interference != nullptr) {
    call_once(interference->after_open);
  }
  return opened;
}

extern "C" int flock(int descriptor, int operation) noexcept {
  if (interference != nullptr) {
    call_once(interference->before_lock);
  }
  return static_cast<int>(::syscall(SYS_flock, descriptor, operation));
}

namespace veldmark {
namespace {

using testing::AsNobody;
using testing::file_content;
using testing::folder_content;
using testing::TemporaryFolder;
using testing::write_file;
using Files = std::map<std::string, std::string>;

constexpr std::string_view kBusy = "cannot write 'grid': another run is writing it";

class PartFileRace : public ::testing::Test, protected Interference {
 protected:
  PartFileRace() { interference = this; }
  ~PartFileRace() override { interference = nullptr; }

  void other_run_begins() {
    other_.emplace("grid");
    other_->write("other");
  }

  // Tries to begin while another run does, which then completes its file.
  void expect_that_the_other_run_wins() {
    try {
      const PartFile file("grid");
      ADD_FAILURE() << "two runs write the same part";
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.what(), kBusy);
    }
    ASSERT_TRUE(other_.has_value());
    other_->complete();
    EXPECT_EQ(folder_content(), (Files{{"grid", "other"}}));
  }

  void expect_success() {
    PartFile file("grid");
    file.write("mine");
    file.complete();
    EXPECT_EQ(file_content("grid"), "mine");
  }

  TemporaryFolder folder_;
  std::optional<PartFile> other_;
};

TEST_F(PartFileRace, TheAbandonedPartIsReplacedBeforeItIsOpened) {
  write_file("grid.part", "left");
  before_open = [&] {
    std::filesystem::remove("grid.part");
    after_open = [&] { other_run_begins(); };
  };
  expect_that_the_other_run_wins();
}

TEST_F(PartFileRace, TheAbandonedPartIsReplacedBeforeItIsLocked) {
  write_file("grid.part", "left");
  before_lock = [&] {
    std::filesystem::remove("grid.part");
    other_run_begins();
  };
  expect_that_the_other_run_wins();
}

TEST_F(PartFileRace, TheNewPartIsReplacedBeforeItIsLocked) {
  before_lock = [&] {
    std::filesystem::remove("grid.part");
    other_run_begins();
  };
  expect_that_the_other_run_wins();
}

// Another run finds the new part, and locks it to find out whether it is abandoned.
TEST_F(PartFileRace, TheNewPartIsLockedByAnotherRun) {
  std::optional<FileDescriptor> part;
  before_lock = [&] {
    part.emplace("grid.part", O_RDWR);
    EXPECT_FALSE(is_locked_by_another(*part));
  };
  try {
    const PartFile file("grid");
    ADD_FAILURE() << "two runs write the same part";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.what(), kBusy);
  }
}

TEST_F(PartFileRace, ALinkTakesThePlaceOfTheAbandonedPart) {
  write_file("grid.part", "left");
  write_file("file", "not ours");
  before_open = [&] {
    std::filesystem::remove("grid.part");
    std::filesystem::create_symlink("file", "grid.part");
  };
  expect_success();
  EXPECT_EQ(file_content("file"), "not ours");
}

// Opening a pipe that has no writer would wait for one.
TEST_F(PartFileRace, APipeTakesThePlaceOfTheAbandonedPart) {
  ASSERT_EQ(::chmod(".", 0777), 0);
  for (const mode_t mode : {0400U, 0600U}) {
    const AsNobody nobody;
    write_file("grid.part", "left");
    before_open = [&] {
      std::filesystem::remove("grid.part");
      ASSERT_EQ(::mkfifo("grid.part", mode), 0);
    };
    expect_success();
  }
}

TEST_F(PartFileRace, AnAbandonedPartIsOpenedOnce) {
  write_file("grid.part", "left");
  access_modes.clear();
  const PartFile file("grid");
  EXPECT_EQ(access_modes, (std::vector<int>{O_RDWR, O_WRONLY}));
}

TEST_F(PartFileRace, EndsWhenEveryPartIsRemoved) {
  int attempts = 0;
  const std::function<void()> remove_part = [&] {
    ++attempts;
    std::filesystem::remove("grid.part");
    before_lock = remove_part;
  };
  before_lock = remove_part;
  try {
    const PartFile file("grid");
    ADD_FAILURE() << "a part without a name";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.what(), kBusy);
  }
  EXPECT_EQ(attempts, 100);
}

}  // namespace
}  // namespace veldmark
