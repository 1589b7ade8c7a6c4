#include "util/file_descriptor.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <fstream>
#include <string>
#include <thread>
#include <utility>

#include "support/interruptions.h"
#include "support/temporary_folder.h"
#include "util/file_lock.h"

namespace veldmark {
namespace {

using testing::file_content;
using testing::Interruptions;
using testing::TemporaryFolder;
using testing::undisturbed;
using testing::write_file;

constexpr int kCreate = O_WRONLY | O_CREAT | O_TRUNC;

void wait_a_little() { std::this_thread::sleep_for(std::chrono::milliseconds(30)); }

TEST(FileDescriptor, RetriesInterruptedOpenAndRead) {
  const TemporaryFolder folder;
  ASSERT_EQ(::mkfifo("pipe", 0600), 0);
  const Interruptions interruptions;
  std::thread writer = undisturbed([] {
    wait_a_little();
    const FileDescriptor file("pipe", O_WRONLY);
    wait_a_little();
    EXPECT_TRUE(file.write_all("abc"));
    wait_a_little();
  });
  const FileDescriptor file("pipe", O_RDONLY);
  EXPECT_TRUE(file.is_open());
  std::array<char, 10> buffer{};
  EXPECT_EQ(file.read(buffer.data(), buffer.size()), 3);
  EXPECT_STREQ(buffer.data(), "abc");
  EXPECT_EQ(file.read(buffer.data(), buffer.size()), 0);
  writer.join();
}

TEST(FileDescriptor, RetriesInterruptedWrites) {
  const TemporaryFolder folder;
  ASSERT_EQ(::mkfifo("pipe", 0600), 0);
  std::string text;
  while (text.size() < 500000) text += std::to_string(text.size()) + " ";
  std::string received;
  const Interruptions interruptions;
  std::thread reader = undisturbed([&] {
    const FileDescriptor file("pipe", O_RDONLY);
    wait_a_little();
    std::array<char, 100000> buffer{};
    for (std::ptrdiff_t count = 1; count > 0;) {
      count = file.read(buffer.data(), buffer.size());
      received.append(buffer.data(), static_cast<std::size_t>(count));
    }
  });
  {
    const FileDescriptor file("pipe", O_WRONLY);
    EXPECT_TRUE(file.write_all(text));
  }
  reader.join();
  EXPECT_EQ(received, text);
}

TEST(FileDescriptor, ReadsAtAnOffsetOnlyWhatExists) {
  const TemporaryFolder folder;
  write_file("file", "0123456789");
  const FileDescriptor file("file", O_RDONLY);
  std::array<char, 4> four{};
  EXPECT_TRUE(file.read_at(6, four.data(), 4));
  EXPECT_EQ(std::string(four.data(), 4), "6789");
  EXPECT_TRUE(file.read_at(0, four.data(), 1));
  EXPECT_EQ(std::string(four.data(), 4), "0789");
  EXPECT_FALSE(file.read_at(7, four.data(), 4));
  EXPECT_FALSE(file.read_at(10, four.data(), 1));
  EXPECT_TRUE(file.read_at(10, four.data(), 0));
  EXPECT_EQ(file.read(four.data(), 2), 2) << "the file's position has not moved";
  EXPECT_EQ(std::string(four.data(), 2), "01");
}

TEST(FileDescriptor, ReportsTheEndOfTheFileWhateverErrnoHolds) {
  const TemporaryFolder folder;
  write_file("in", "abc");
  const FileDescriptor file("in", O_RDONLY);
  std::array<char, 4> buffer{};
  for (const int earlier : {0, EINTR}) {
    errno = earlier;
    EXPECT_FALSE(file.read_at(0, buffer.data(), 4)) << earlier;
  }
}

TEST(FileDescriptor, RetriesPartialReadsAtAnOffset) {
  // The system returns only a few thousand bytes of this file at a time.
  const char* name = "/proc/kallsyms";
  const FileDescriptor file(name, O_RDONLY);
  constexpr std::size_t kSize = 20000;
  std::string expected(kSize + 7, ' ');
  if (!std::ifstream(name).read(expected.data(), kSize + 7)) {
    GTEST_SKIP() << "no such file here";
  }
  std::string found(kSize, ' ');
  EXPECT_TRUE(file.read_at(7, found.data(), kSize));
  EXPECT_EQ(found, expected.substr(7));
}

TEST(FileDescriptor, ReportsFailures) {
  const TemporaryFolder folder;
  write_file("file", "text");
  const FileDescriptor for_reading("file", O_RDONLY);
  const FileDescriptor for_writing("file", O_WRONLY);
  std::array<char, 4> buffer{};
  EXPECT_EQ(for_writing.read(buffer.data(), 4), -1);
  EXPECT_FALSE(for_writing.read_at(0, buffer.data(), 4));
  EXPECT_FALSE(for_reading.write_all("new"));
  EXPECT_TRUE(for_reading.write_all(""));
  EXPECT_FALSE(FileDescriptor("missing", O_RDONLY).is_open());
  EXPECT_FALSE(FileDescriptor("no/such", kCreate).is_open());
}

TEST(FileDescriptor, CreatesFilesWithTheModeThatTheUmaskAllows) {
  const TemporaryFolder folder;
  const mode_t before = ::umask(0);
  const FileDescriptor open_to_all("all", kCreate);
  ::umask(027);
  const FileDescriptor masked("masked", kCreate);
  ::umask(before);
  struct stat status {};
  ASSERT_EQ(::fstat(open_to_all.get(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0666U);
  ASSERT_EQ(::fstat(masked.get(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0640U);
}

TEST(FileDescriptor, IsNotInheritedByCommands) {
  const TemporaryFolder folder;
  const FileDescriptor file("file", kCreate);
  EXPECT_NE(::fcntl(file.get(), F_GETFD) & FD_CLOEXEC, 0);
}

TEST(FileDescriptor, ClosesOnceAndReportsLostData) {
  const TemporaryFolder folder;
  FileDescriptor file("file", kCreate);
  EXPECT_TRUE(file.write_all("text"));
  EXPECT_TRUE(file.close());
  EXPECT_FALSE(file.is_open());
  EXPECT_TRUE(file.close());
  EXPECT_EQ(file_content("file"), "text");

  FileDescriptor lost("file", kCreate);
  ASSERT_EQ(::close(lost.get()), 0);
  EXPECT_FALSE(lost.close());
  EXPECT_FALSE(lost.is_open());
}

TEST(FileDescriptor, IsOpenForDescriptorZeroToo) {
  const TemporaryFolder folder;
  write_file("file", "text");
  const int input = ::dup(0);
  ::close(0);  // the next file opened is number 0
  {
    FileDescriptor file("file", O_RDONLY);
    EXPECT_EQ(file.get(), 0);
    EXPECT_TRUE(file.is_open());
    EXPECT_TRUE(file.close());
    EXPECT_EQ(::fcntl(0, F_GETFD), -1) << "it is closed";
  }
  ::dup2(input, 0);
  ::close(input);
}

TEST(FileDescriptor, ClosesInTheDestructorAndCanBeMoved) {
  const TemporaryFolder folder;
  int number = -1;
  {
    FileDescriptor first("file", kCreate);
    number = first.get();
    const FileDescriptor second(std::move(first));
    EXPECT_FALSE(first.is_open());  // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(second.get(), number);
    EXPECT_NE(::fcntl(number, F_GETFD), -1);
  }
  EXPECT_EQ(::fcntl(number, F_GETFD), -1);
}

TEST(FileLock, IsHeldUntilItIsReleased) {
  const TemporaryFolder folder;
  const FileDescriptor first("file", kCreate);
  const FileDescriptor second("file", kCreate);
  errno = EWOULDBLOCK;  // left by an earlier call
  EXPECT_FALSE(is_locked_by_another(first));
  EXPECT_TRUE(is_locked_by_another(second));
  errno = EINTR;
  unlock(first);
  EXPECT_FALSE(is_locked_by_another(second));
}

}  // namespace
}  // namespace veldmark
