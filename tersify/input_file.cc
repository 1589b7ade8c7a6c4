#include "tersify/input_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>
#include <system_error>

#include "util/failure.h"

namespace veldmark::tersify {
namespace {

struct Compression {
  std::string_view first_bytes;
  std::string_view name;
};

constexpr std::array<Compression, 5> kCompressions{{{"\x1f\x8b", "gzip"},
                                                    {"PK\x03\x04", "zip"},
                                                    {"PK\x05\x06", "zip"},
                                                    {"BZh", "bzip2"},
                                                    {"\xfd"
                                                     "7zXZ",
                                                     "xz"}}};
constexpr std::size_t kLongestMark = 5;

}  // namespace

// Opened without waiting: a named pipe would hold the program up until somebody writes.
InputFile::InputFile(const std::string& name)
    : name_(name), file_(name, O_RDONLY | O_NONBLOCK) {
  if (!file_.is_open()) fail(errno);
  struct stat found {};
  if (::fstat(file_.get(), &found) != 0) fail(errno);
  if (S_ISDIR(found.st_mode)) fail(EISDIR);
  if (!S_ISREG(found.st_mode)) {
    throw Failure("cannot read " + name_ + ": it is not a regular file");
  }
  size_ = found.st_size;
  const std::string first_bytes = beginning(kLongestMark);
  for (const Compression& compression : kCompressions) {
    if (first_bytes.starts_with(compression.first_bytes)) {
      throw Failure(name_ + " is compressed (" + std::string(compression.name) +
                    "); decompress it first");
    }
  }
}

std::string InputFile::beginning(std::size_t longest) const {
  std::string bytes(std::min(longest, static_cast<std::size_t>(size_)), '\0');
  errno = 0;  // stays so where the file ends before
  if (!file_.read_at(0, bytes.data(), bytes.size())) {
    if (errno != 0) fail(errno);
    fail_shorter();
  }
  return bytes;
}

std::size_t InputFile::read(char* buffer, std::size_t size) {
  const std::ptrdiff_t count = file_.read(buffer, size);
  if (count < 0) fail(errno);
  return static_cast<std::size_t>(count);
}

bool InputFile::is_same_file(const std::string& other) const {
  struct stat own {};
  struct stat found {};
  return ::fstat(file_.get(), &own) == 0 && ::stat(other.c_str(), &found) == 0 &&
         own.st_dev == found.st_dev && own.st_ino == found.st_ino;
}

void InputFile::fail_shorter() const {
  throw Failure("cannot read " + name_ + ": it has become shorter");
}

void InputFile::fail(int error) const {
  throw Failure("cannot read " + name_ + ": " + std::generic_category().message(error));
}

}  // namespace veldmark::tersify
