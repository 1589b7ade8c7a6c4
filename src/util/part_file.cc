#include "util/part_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include "util/failure.h"
#include "util/file_identity.h"
#include "util/file_lock.h"
#include "util/in_quotes.h"
#include "util/interrupt_watch.h"

namespace veldmark {
namespace {

[[noreturn]] void fail(const std::string& name, const std::string& reason) {
  throw Failure("cannot write " + in_quotes(name) + ": " + reason);
}

[[noreturn]] void fail_with_errno(const std::string& name) {
  fail(name, std::generic_category().message(errno));
}

[[noreturn]] void fail_busy(const std::string& name) {
  fail(name, "another run is writing it");
}

// Does `name` itself, no link to it, stand for the open file?
bool stands_for(const std::string& name, const FileDescriptor& file) {
  struct stat opened {};
  struct stat named {};
  return ::fstat(file.get(), &opened) == 0 && ::lstat(name.c_str(), &named) == 0 &&
         regular_file(opened).has_value() &&
         regular_file(opened) == regular_file(named);
}

// Opens what stands at `part_name` to learn whether it is locked; not a link, and
// without waiting for anything. File systems on a network lock only what was opened for
// writing; a part that is protected from writing is opened for reading instead.
FileDescriptor open_for_locking(const std::string& part_name) {
  constexpr int kAsItIs = O_NOFOLLOW | O_NONBLOCK;
  FileDescriptor file(part_name, O_RDWR | kAsItIs);
  if (file.is_open()) {
    return file;
  }
  return {part_name, O_RDONLY | kAsItIs};
}

// The part that stands at `part_name` can't be opened. Is it an abandoned one of this
// user's, who has protected it? Throws Failure where it may be a part that another
// user's run is writing. False when it is gone by now.
bool is_own_protected(const std::string& part_name, const struct stat& found) {
  if (errno == ENOENT || errno == ELOOP) {
    return false;
  }
  if (errno != EACCES || found.st_uid != ::geteuid()) {
    fail_with_errno(part_name);
  }
  return true;
}

// Removes what stands at `part_name`; throws Failure when another run is writing it, or
// when that can't be seen. Only who holds its lock may remove a part: by the time this
// one has the lock, another run may have removed the part and made its own, which must
// stay.
void remove_abandoned(const std::string& name, const std::string& part_name) {
  struct stat found {};
  if (::lstat(part_name.c_str(), &found) != 0) {
    return;
  }
  const bool is_file = S_ISREG(found.st_mode);
  const FileDescriptor part =
      is_file ? open_for_locking(part_name) : FileDescriptor(-1);
  if (is_file && !part.is_open() && !is_own_protected(part_name, found)) {
    return;
  }
  if (part.is_open() && is_locked_by_another(part)) {
    fail_busy(name);
  }
  if (part.is_open() && !stands_for(part_name, part)) {
    return;
  }
  if (::unlink(part_name.c_str()) != 0 && errno != ENOENT) {
    fail_with_errno(part_name);
  }
}

// Makes a part of this run's own and locks it. Between any two steps another run may
// take the same ones; whoever is late begins again and then meets the other's lock.
FileDescriptor make_part(const std::string& name, const std::string& part_name) {
  struct stat found {};
  if (::stat(name.c_str(), &found) == 0 && !S_ISREG(found.st_mode)) {
    fail(name, "it exists and is not a regular file");
  }
  constexpr int kMostTries = 100;
  for (int i = 0; i < kMostTries; ++i) {
    InterruptWatch::obey();
    remove_abandoned(name, part_name);
    FileDescriptor part(part_name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW);
    if (!part.is_open() && errno != EEXIST) {
      fail_with_errno(part_name);
    }
    if (part.is_open() && is_locked_by_another(part)) {
      fail_busy(name);
    }
    if (part.is_open() && stands_for(part_name, part)) {
      return part;
    }
  }
  fail_busy(name);
}

// Some file systems have nothing to wait for, and say that they can't.
bool is_on_disk(const FileDescriptor& file) {
  int result = 0;
  do {
    InterruptWatch::obey();
    result = ::fsync(file.get());
  } while (result != 0 && errno == EINTR);
  return result == 0 || errno == EINVAL || errno == ENOTSUP;
}

// Network file systems report a failed write only when a descriptor is closed. This one
// has to stay open until the end, so a copy of it is closed.
bool is_flushed(const FileDescriptor& file) {
  FileDescriptor copy(::fcntl(file.get(), F_DUPFD_CLOEXEC, 0));
  return copy.is_open() && copy.close();
}

// A new name is on the disk when its folder is. The file itself is there already, so
// that a failure loses nothing.
void put_folder_on_disk(const std::string& name) {
  const std::filesystem::path folder = std::filesystem::path(name).parent_path();
  const FileDescriptor opened(folder.empty() ? "." : folder.string(),
                              O_RDONLY | O_DIRECTORY);
  if (opened.is_open()) {
    ::fsync(opened.get());
  }
}

}  // namespace

std::string PartFile::part_name(const std::string& name) { return name + ".part"; }

PartFile::PartFile(std::string name)
    : name_(std::move(name)),
      part_name_(part_name(name_)),
      file_(make_part(name_, part_name_)) {}

// The part is removed while it is still locked. What stands in its place by now is not
// this run's to remove.
PartFile::~PartFile() {
  if (file_.is_open() && stands_for(part_name_, file_)) {
    ::unlink(part_name_.c_str());
  }
}

// The descriptor stays open, so that no other file can get this one's identity.
void PartFile::hand_over() { unlock(file_); }

void PartFile::write(std::string_view text) {
  if (!file_.write_all(text)) {
    fail_with_errno(part_name_);
  }
  size_ += static_cast<std::int64_t>(text.size());
}

void PartFile::write_at(std::int64_t offset, std::string_view text) {
  if (::lseek(file_.get(), offset, SEEK_SET) < 0 || !file_.write_all(text)) {
    fail_with_errno(part_name_);
  }
  size_ = std::max(size_, offset + static_cast<std::int64_t>(text.size()));
}

// The lock goes with the closing, so that comes last. A close that fails has nothing to
// tell then: all is on the disk.
void PartFile::complete() {
  if (!is_on_disk(file_)) {
    fail_with_errno(part_name_);
  }
  rename();
  put_folder_on_disk(name_);
  file_.close();
}

void PartFile::complete_unsynced() {
  if (!is_flushed(file_)) {
    fail_with_errno(part_name_);
  }
  rename();
  file_.close();
}

void PartFile::rename() {
  InterruptWatch::obey();
  if (!stands_for(part_name_, file_)) {
    fail(name_, in_quotes(part_name_) + " was removed or replaced meanwhile");
  }
  if (std::rename(part_name_.c_str(), name_.c_str()) != 0) {
    fail_with_errno(name_);
  }
}

}  // namespace veldmark
