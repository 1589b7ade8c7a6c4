#include "util/part_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <optional>
#include <system_error>
#include <utility>

#include "util/failure.h"
#include "util/file_identity.h"
#include "util/file_lock.h"
#include "util/file_naming.h"
#include "util/in_quotes.h"
#include "util/interrupt_watch.h"
#include "util/on_disk.h"

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

// Returns whether `name` is the open file itself, not a symbolic link to it.
bool names_open_file(const std::string& name, const FileDescriptor& file) {
  struct stat opened {};
  struct stat named {};
  return ::fstat(file.get(), &opened) == 0 && ::lstat(name.c_str(), &named) == 0 &&
         regular_file(opened).has_value() &&
         regular_file(opened) == regular_file(named);
}

// Opens the file at `part_name` to find out whether it is locked. Does not follow links
// and never blocks. Network file systems lock only files that are open for writing, so
// that comes first; a write-protected part is opened for reading.
FileDescriptor open_for_locking(const std::string& part_name) {
  constexpr int kNoFollowNoWait = O_NOFOLLOW | O_NONBLOCK;
  FileDescriptor file(part_name, O_RDWR | kNoFollowNoWait);
  if (file.is_open()) {
    return file;
  }
  return {part_name, O_RDONLY | kNoFollowNoWait};
}

// Called when the part at `part_name` could not be opened; errno holds the reason.
// Returns true if it is an abandoned part that this user has protected, false if it is
// gone by now. Throws Failure if another user's run may be writing it.
bool is_own_protected(const std::string& part_name, const struct stat& found) {
  if (errno == ENOENT || errno == ELOOP) {
    return false;
  }
  if (errno != EACCES || found.st_uid != ::geteuid()) {
    fail_with_errno(part_name);
  }
  return true;
}

// Removes whatever is at `part_name`. Throws Failure if another run is writing it, or
// if that cannot be found out. Only the holder of its lock may remove a part. Before
// this run gets the lock, another one may have replaced the part by its own, which must
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
  if (part.is_open() && !names_open_file(part_name, part)) {
    return;
  }
  if (::unlink(part_name.c_str()) != 0 && errno != ENOENT) {
    fail_with_errno(part_name);
  }
}

// Creates this run's part and locks it. Another run may be doing the same at the same
// time; the slower one retries and then finds the lock of the other.
FileDescriptor make_part(const std::string& name, const std::string& part_name) {
  struct stat found {};
  if (::stat(name.c_str(), &found) == 0 && !S_ISREG(found.st_mode)) {
    fail(name, "it exists and is not a regular file");
  }
  constexpr int kMaxAttempts = 100;
  for (int i = 0; i < kMaxAttempts; ++i) {
    InterruptWatch::throw_if_caught();
    remove_abandoned(name, part_name);
    FileDescriptor part(part_name, O_WRONLY | O_CREAT | O_EXCL);
    if (!part.is_open() && errno != EEXIST) {
      fail_with_errno(part_name);
    }
    if (part.is_open() && is_locked_by_another(part)) {
      fail_busy(name);
    }
    if (part.is_open() && names_open_file(part_name, part)) {
      return part;
    }
  }
  fail_busy(name);
}

}  // namespace

std::string PartFile::part_name(const std::string& name) { return name + ".part"; }

PartFile::PartFile(std::string name, IfExists if_exists)
    : name_(std::move(name)),
      part_name_(part_name(name_)),
      if_exists_(if_exists),
      file_(make_part(name_, part_name_)) {}

// Removes the part while it is still locked, unless another file has taken its place.
PartFile::~PartFile() {
  if (file_.is_open() && names_open_file(part_name_, file_)) {
    ::unlink(part_name_.c_str());
  }
}

// The descriptor stays open, so that no other file can get the same inode.
void PartFile::release_lock() { unlock(file_); }

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

void PartFile::complete(Durability durability) {
  settle(durability);
  take_name();
  close(durability);
}

// Whatever is likely to fail is done before the first rename.
void PartFile::complete_both(PartFile& first, PartFile& second, Durability durability) {
  first.settle(durability);
  second.settle(durability);
  const Undo undo = first.take_name_reversibly();
  try {
    second.take_name();
  } catch (const Failure& failure) {
    if (first.undo_rename(undo)) {
      throw;
    }
    throw Failure(std::string(failure.what()) + "; " + in_quotes(first.name_) +
                  " is the new file already");
  }
  if (undo == Undo::kExchange) {
    ::unlink(first.part_name_.c_str());  // the replaced file
  }
  first.close(durability);
  second.close(durability);
}

// Flushes the part and checks that it is still this run's own.
void PartFile::settle(Durability durability) {
  const bool written =
      durability == Durability::kSynced ? sync_to_disk(file_) : flush(file_);
  if (!written) {
    fail_with_errno(part_name_);
  }
  InterruptWatch::throw_if_caught();
  if (!names_open_file(part_name_, file_)) {
    fail(name_, in_quotes(part_name_) + " was removed or replaced meanwhile");
  }
}

void PartFile::take_name() {
  if (if_exists_ == IfExists::kKeep) {
    take_free_name();
  } else if (std::rename(part_name_.c_str(), name_.c_str()) != 0) {
    fail_with_errno(name_);
  }
}

void PartFile::take_free_name() {
  if (rename_to_free_name(part_name_, name_)) {
    return;
  }
  if (errno == EEXIST) {
    fail(name_, "another file has got this name meanwhile");
  }
  fail_with_errno(name_);
}

// Renames the part and keeps an existing file, under the part's name, for undoing that.
PartFile::Undo PartFile::take_name_reversibly() {
  struct stat found {};
  const bool is_free = ::lstat(name_.c_str(), &found) != 0 && errno == ENOENT;
  if (if_exists_ == IfExists::kKeep || is_free) {
    take_free_name();
    return Undo::kRemove;
  }
  if (!S_ISDIR(found.st_mode) && exchange_names(part_name_, name_)) {
    return Undo::kExchange;
  }
  take_name();
  return Undo::kNothing;
}

// Undoes take_name_reversibly(); false if that is impossible.
bool PartFile::undo_rename(Undo undo) {
  if (!names_open_file(name_, file_)) {
    return true;  // the name belongs to another file by now
  }
  if (undo == Undo::kExchange) {
    return exchange_names(part_name_, name_);
  }
  return undo == Undo::kRemove && ::unlink(name_.c_str()) == 0;
}

// Closing releases the lock, so that comes last. A failure of close() means nothing by
// then: the content was flushed before.
void PartFile::close(Durability durability) {
  if (durability == Durability::kSynced) {
    sync_folder_of(name_);
  }
  file_.close();
}

}  // namespace veldmark
