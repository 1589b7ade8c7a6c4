#include "companion/input_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

#include "support/temporary_folder.h"
#include "util/failure.h"

namespace veldmark::companion {
namespace {

using testing::TemporaryFolder;
using testing::write_file;
using Kind = InputFile::Kind;

std::string failure_of(const std::string& name, Kind kind) {
  try {
    const InputFile file(name, kind);
    return "no failure";
  } catch (const Failure& error) {
    return error.what();
  }
}

// Reads to the end, `size` bytes at a time.
std::string rest_of(const InputFile& file, std::size_t size = 4) {
  std::string text;
  std::string piece(size, '\0');
  for (std::size_t count = 0; (count = file.read(piece.data(), size)) > 0;) {
    text += piece.substr(0, count);
  }
  return text;
}

TEST(InputFile, IsReadToItsEnd) {
  const TemporaryFolder folder;
  write_file("a", "one two three");
  const InputFile file("a", Kind::kRegular);
  EXPECT_EQ(file.size(), 13);
  EXPECT_EQ(file.shown_name(), "'a'");
  EXPECT_EQ(file.identity(), regular_file(std::string("a")));
  EXPECT_EQ(file.beginning(3), "one");
  EXPECT_EQ(rest_of(file), "one two three");
  EXPECT_EQ(file.beginning(100), "one two three");
}

TEST(InputFile, AMissingFileIsNamed) {
  const TemporaryFolder folder;
  EXPECT_EQ(failure_of("a", Kind::kRegular),
            "cannot read 'a': No such file or directory");
  EXPECT_EQ(failure_of(" a\x1b[2J", Kind::kAny),
            "cannot read ' a?[2J': No such file or directory");
}

TEST(InputFile, ADirectoryIsRefused) {
  EXPECT_EQ(failure_of("/", Kind::kRegular), "cannot read '/': Is a directory");
  EXPECT_EQ(failure_of("/", Kind::kAny), "cannot read '/': Is a directory");
}

TEST(InputFile, APipeIsReadOnlyWithKindAny) {
  const TemporaryFolder folder;
  ASSERT_EQ(::mkfifo("pipe", 0600), 0);
  EXPECT_EQ(failure_of("pipe", Kind::kRegular),
            "cannot read 'pipe': it is not a regular file");
  std::thread writer([] { write_file("pipe", "through the pipe"); });
  const InputFile file("pipe", Kind::kAny);
  EXPECT_EQ(rest_of(file), "through the pipe");
  EXPECT_EQ(file.size(), 0);
  EXPECT_EQ(file.identity(), std::nullopt);
  writer.join();
}

TEST(InputFile, AFileThatHasBecomeShorterIsAFailure) {
  const TemporaryFolder folder;
  write_file("a", "one two three");
  const InputFile file("a", Kind::kRegular);
  std::filesystem::resize_file("a", 2);
  try {
    (void)file.beginning(5);
    ADD_FAILURE() << "read";
  } catch (const Failure& error) {
    EXPECT_STREQ(error.what(), "cannot read 'a': it has become shorter");
  }
}

TEST(InputFile, AnOpenDescriptorStaysOpen) {
  std::array<int, 2> ends{};
  ASSERT_EQ(::pipe(ends.data()), 0);
  ASSERT_EQ(::write(ends[1], "x", 1), 1);
  {
    const InputFile file(ends[0], "the standard input");
    EXPECT_EQ(file.shown_name(), "the standard input");
    EXPECT_EQ(file.identity(), std::nullopt);
    char byte = 0;
    EXPECT_EQ(file.read(&byte, 1), 1U);
  }
  EXPECT_GE(::fcntl(ends[0], F_GETFD), 0);
  ::close(ends[0]);
  ::close(ends[1]);
}

TEST(InputFile, ADescriptorThatIsNotOpenIsAFailure) {
  try {
    const InputFile file(-1, "the standard input");
    ADD_FAILURE() << "opened";
  } catch (const Failure& error) {
    EXPECT_STREQ(error.what(), "cannot read the standard input: Bad file descriptor");
  }
}

// Another program on the same terminal can leave it in non-blocking mode.
TEST(InputFile, ANonBlockingInputIsWaitedFor) {
  std::array<int, 2> ends{};
  ASSERT_EQ(::pipe2(ends.data(), O_NONBLOCK), 0);
  const InputFile file(ends[0], "the standard input");
  std::thread writer([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(::write(ends[1], "late", 4), 4);
    ::close(ends[1]);
  });
  EXPECT_EQ(rest_of(file), "late");
  writer.join();
  ::close(ends[0]);
}

}  // namespace
}  // namespace veldmark::companion
