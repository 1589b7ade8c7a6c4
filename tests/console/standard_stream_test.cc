#include "console/standard_stream.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <istream>
#include <ostream>
#include <string>
#include <thread>

#include "support/interruptions.h"
#include "support/stream_content.h"
#include "support/temporary_folder.h"
#include "util/file_descriptor.h"

namespace veldmark {
namespace {

using testing::file_content;
using testing::Interruptions;
using testing::stream_content;
using testing::TemporaryFolder;
using testing::undisturbed;
using testing::write_file;

// Returns `size` characters, each different from its neighbours.
std::string text_of(std::size_t size) {
  std::string text;
  for (std::size_t i = 0; i < size; ++i) {
    text += static_cast<char>('!' + i % 89);
  }
  return text;
}

// Sizes around that of the buffer.
constexpr std::size_t kSizes[] = {0, 1, 8191, 8192, 8193, 16384, 50000};

TEST(StandardStream, WritesEverythingOnFlush) {
  for (const std::size_t size : kSizes) {
    const TemporaryFolder folder;
    const FileDescriptor file("out", O_WRONLY | O_CREAT);
    StandardStream buffer(file.get());
    std::ostream stream(&buffer);
    stream << text_of(size) << std::flush;
    EXPECT_TRUE(stream.good());
    EXPECT_TRUE(file_content("out") == text_of(size)) << size;
    for (const char character : text_of(size)) {
      stream.put(character);
    }
    stream.flush();
    EXPECT_TRUE(file_content("out") == text_of(size) + text_of(size)) << size;
  }
}

TEST(StandardStream, BuffersUntilFlush) {
  const TemporaryFolder folder;
  const FileDescriptor file("out", O_WRONLY | O_CREAT);
  StandardStream buffer(file.get());
  std::ostream stream(&buffer);
  stream << text_of(8192);
  EXPECT_EQ(file_content("out"), "");
  stream << "x";
  EXPECT_TRUE(file_content("out") == text_of(8192));
}

TEST(StandardStream, ReadsToTheEnd) {
  for (const std::size_t size : kSizes) {
    const TemporaryFolder folder;
    write_file("in", text_of(size));
    const FileDescriptor file("in", O_RDONLY);
    StandardStream buffer(file.get());
    std::istream stream(&buffer);
    EXPECT_TRUE(stream_content(stream) == text_of(size)) << size;
  }
}

TEST(StandardStream, IsBadIfItCannotBeWritten) {
  const FileDescriptor full("/dev/full", O_WRONLY);
  StandardStream buffer(full.get());
  std::ostream stream(&buffer);
  stream << "text";
  EXPECT_TRUE(stream.good());
  stream.flush();
  EXPECT_EQ(errno, ENOSPC);
  EXPECT_TRUE(stream.bad());
}

TEST(StandardStream, IsBadIfItCannotBeRead) {
  const FileDescriptor folder("/", O_RDONLY);
  StandardStream buffer(folder.get());
  std::istream stream(&buffer);
  EXPECT_EQ(stream.get(), std::istream::traits_type::eof());
  EXPECT_EQ(errno, EISDIR);
  EXPECT_TRUE(stream.bad());
}

// An answer that is awaited for many signals, in read() or in poll().
TEST(StandardStream, SignalsDoNotEndTheWaitForAnAnswer) {
  for (const int flags : {0, O_NONBLOCK}) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe2(ends.data(), flags), 0);
    const Interruptions interruptions;
    std::thread user = undisturbed([&] {
      std::this_thread::sleep_for(std::chrono::milliseconds(30));
      EXPECT_EQ(::write(ends[1], "yes", 3), 3);
      ::close(ends[1]);
    });
    StandardStream buffer(ends[0]);
    std::istream stream(&buffer);
    EXPECT_EQ(stream_content(stream), "yes");
    user.join();
    ::close(ends[0]);
  }
}

}  // namespace
}  // namespace veldmark
