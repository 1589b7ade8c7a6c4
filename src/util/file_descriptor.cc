#include "util/file_descriptor.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace veldmark {
namespace {

constexpr int kFailed = -1;  // what a failed system call returns
constexpr mode_t kCreationMode = 0666;

int open_descriptor(const std::string& name, int flags) {
  int descriptor = kFailed;
  do {
    descriptor = ::open(name.c_str(), flags | O_CLOEXEC, kCreationMode);
  } while (descriptor == kFailed && errno == EINTR);
  return descriptor;
}

}  // namespace

FileDescriptor::FileDescriptor(const std::string& name, int flags)
    : descriptor_(open_descriptor(name, flags)) {}

FileDescriptor::FileDescriptor(FileDescriptor&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, kClosed)) {}

FileDescriptor::~FileDescriptor() { close(); }

std::ptrdiff_t FileDescriptor::read(char* buffer, std::size_t size) const {
  ssize_t count = 0;
  do {
    count = ::read(descriptor_, buffer, size);
  } while (count == kFailed && errno == EINTR);
  return count;
}

bool FileDescriptor::read_at(std::int64_t offset, char* buffer,
                             std::size_t size) const {
  std::size_t done = 0;
  while (done < size) {
    const ssize_t count = ::pread(descriptor_, buffer + done, size - done,
                                  offset + static_cast<std::int64_t>(done));
    if (count > 0) {
      done += static_cast<std::size_t>(count);
    } else if (count == 0 || errno != EINTR) {
      return false;
    }
  }
  return true;
}

bool FileDescriptor::write_all(std::string_view bytes) const {
  while (!bytes.empty()) {
    const ssize_t count = ::write(descriptor_, bytes.data(), bytes.size());
    if (count != kFailed) {
      bytes.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      return false;
    }
  }
  return true;
}

bool FileDescriptor::close() {
  if (!is_open()) {
    return true;
  }
  // The descriptor is gone whatever close(2) reports; an interrupted close is done.
  const int result = ::close(std::exchange(descriptor_, kClosed));
  return result == 0 || errno == EINTR;
}

FileDescriptor duplicate_of(int descriptor) {
  return FileDescriptor(::fcntl(descriptor, F_DUPFD_CLOEXEC, 0));
}

}  // namespace veldmark
