#include "util/part_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

#include "util/failure.h"

namespace veldmark {
namespace {

constexpr int kFailed = -1;              // what the system's calls give
constexpr mode_t kReadableByAll = 0666;  // less what the user's mask takes away

[[noreturn]] void fail(const std::string& name, const std::string& reason) {
  throw Failure("cannot write " + name + ": " + reason);
}

[[noreturn]] void fail_with_errno(const std::string& name) {
  fail(name, std::generic_category().message(errno));
}

}  // namespace

FileCalls system_file_calls() {
  return {.write = ::write, .close = ::close, .rename = std::rename};
}

PartFile::PartFile(std::string name, const FileCalls& calls)
    : name_(std::move(name)), part_name_(name_ + ".part"), calls_(calls) {
  struct stat found {};
  if (::stat(name_.c_str(), &found) == 0 && !S_ISREG(found.st_mode)) {
    fail(name_, "it exists and is not a regular file");
  }
  do {
    descriptor_ = ::open(part_name_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC,
                         kReadableByAll);
  } while (descriptor_ == kFailed && errno == EINTR);
  if (descriptor_ == kFailed) fail_with_errno(part_name_);
}

PartFile::~PartFile() {
  if (complete_) return;
  if (descriptor_ != kClosed) calls_.close(descriptor_);
  ::unlink(part_name_.c_str());
}

void PartFile::write(std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = calls_.write(descriptor_, text.data(), text.size());
    if (written != kFailed) {
      text.remove_prefix(static_cast<std::size_t>(written));
      size_ += written;
    } else if (errno != EINTR) {
      fail_with_errno(part_name_);
    }
  }
}

void PartFile::complete() {
  // Closed even when close reports an error: a second attempt could hit another file.
  // An interrupted close is done.
  if (calls_.close(std::exchange(descriptor_, kClosed)) != 0 && errno != EINTR) {
    fail_with_errno(part_name_);
  }
  if (calls_.rename(part_name_.c_str(), name_.c_str()) != 0) fail_with_errno(name_);
  complete_ = true;
}

}  // namespace veldmark
