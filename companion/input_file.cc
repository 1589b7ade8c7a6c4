#include "companion/input_file.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

#include "companion/wait_until_ready.h"
#include "util/failure.h"
#include "util/in_quotes.h"

namespace veldmark::companion {

// O_NONBLOCK: where a regular file is expected, opening a pipe must not block until
// there is a writer.
InputFile::InputFile(const std::string& name, Kind kind)
    : shown_name_(in_quotes(name)),
      file_(name, kind == Kind::kRegular ? O_RDONLY | O_NONBLOCK : O_RDONLY) {
  inspect(kind);
}

InputFile::InputFile(int descriptor, std::string name)
    : shown_name_(std::move(name)), file_(duplicate_of(descriptor)) {
  inspect(Kind::kAny);
}

void InputFile::inspect(Kind kind) {
  struct stat found {};
  if (!file_.is_open() || ::fstat(file_.get(), &found) != 0) {
    fail_with_errno();
  }
  if (S_ISDIR(found.st_mode)) {
    fail(std::generic_category().message(EISDIR));
  }
  identity_ = regular_file(found);
  if (identity_) {
    size_ = found.st_size;
  } else if (kind == Kind::kRegular) {
    fail("it is not a regular file");
  }
}

std::string InputFile::beginning(std::size_t longest) const {
  return bytes_at(0, std::min(longest, static_cast<std::size_t>(size_)));
}

std::string InputFile::ending(std::size_t longest) const {
  const std::size_t count = std::min(longest, static_cast<std::size_t>(size_));
  return bytes_at(size_ - static_cast<std::int64_t>(count), count);
}

std::string InputFile::bytes_at(std::int64_t offset, std::size_t count) const {
  std::string bytes;
  bytes.resize(count);
  errno = 0;  // a read that ends early, at the end of the file, doesn't set it
  if (!file_.read_at(offset, bytes.data(), bytes.size())) {
    if (errno != 0) {
      fail_with_errno();
    }
    fail_shorter();
  }
  return bytes;
}

// Another program may have left the standard input in non-blocking mode.
std::size_t InputFile::read(char* buffer, std::size_t size) const {
  std::ptrdiff_t count = file_.read(buffer, size);
  while (count < 0 && errno == EAGAIN) {
    wait_until_ready(file_.get(), POLLIN);
    count = file_.read(buffer, size);
  }
  if (count < 0) {
    fail_with_errno();
  }
  return static_cast<std::size_t>(count);
}

void InputFile::fail_shorter() const { fail("it has become shorter"); }

void InputFile::fail(const std::string& reason) const {
  throw Failure("cannot read " + shown_name_ + ": " + reason);
}

void InputFile::fail_with_errno() const {
  fail(std::generic_category().message(errno));
}

}  // namespace veldmark::companion
