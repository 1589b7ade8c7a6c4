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

}  // namespace

std::string PartFile::part_name(const std::string& name) { return name + ".part"; }

PartFile::PartFile(std::string name, Earlier earlier)
    : name_(std::move(name)),
      part_name_(part_name(name_)),
      earlier_(earlier),
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

void PartFile::complete(Durability durability) {
  settle(durability);
  take_name();
  close(durability);
}

// All that is likely to fail comes before the first one has its name.
void PartFile::complete_both(PartFile& first, PartFile& second, Durability durability) {
  first.settle(durability);
  second.settle(durability);
  const Undo undo = first.take_name_for_now();
  try {
    second.take_name();
  } catch (const Failure& failure) {
    if (first.give_name_back(undo)) {
      throw;
    }
    throw Failure(std::string(failure.what()) + "; " + in_quotes(first.name_) +
                  " is the new file already");
  }
  if (undo == Undo::kExchange) {
    ::unlink(first.part_name_.c_str());  // the earlier file
  }
  first.close(durability);
  second.close(durability);
}

// Makes sure that the part is written, and still this run's own.
void PartFile::settle(Durability durability) {
  const bool written =
      durability == Durability::kSynced ? is_on_disk(file_) : is_flushed(file_);
  if (!written) {
    fail_with_errno(part_name_);
  }
  InterruptWatch::obey();
  if (!stands_for(part_name_, file_)) {
    fail(name_, in_quotes(part_name_) + " was removed or replaced meanwhile");
  }
}

void PartFile::take_name() {
  if (earlier_ == Earlier::kKept) {
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

// An earlier file gets the part's name until it is no longer needed.
PartFile::Undo PartFile::take_name_for_now() {
  struct stat found {};
  const bool is_free = ::lstat(name_.c_str(), &found) != 0 && errno == ENOENT;
  if (earlier_ == Earlier::kKept || is_free) {
    take_free_name();
    return Undo::kRemove;
  }
  if (!S_ISDIR(found.st_mode) && exchange_names(part_name_, name_)) {
    return Undo::kExchange;
  }
  take_name();
  return Undo::kNothing;
}

// False when the file has to stay.
bool PartFile::give_name_back(Undo undo) {
  if (!stands_for(name_, file_)) {
    return true;  // somebody else's by now
  }
  if (undo == Undo::kExchange) {
    return exchange_names(part_name_, name_);
  }
  return undo == Undo::kRemove && ::unlink(name_.c_str()) == 0;
}

// The lock goes with the closing, so that comes last. A close that fails has nothing to
// tell then: the content was flushed before.
void PartFile::close(Durability durability) {
  if (durability == Durability::kSynced) {
    put_folder_on_disk(name_);
  }
  file_.close();
}

}  // namespace veldmark
