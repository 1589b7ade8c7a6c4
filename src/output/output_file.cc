#include "output/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <utility>

#include "util/file_fault.h"
#include "util/file_lock.h"
#include "util/piece_size.h"

namespace veldmark {
namespace {

FileFault not_opened(const std::string& name, int error_number) {
  return {FileFault::Kind::kNotOpened, name, error_number};
}

bool is_pipe(const std::string& name) {
  struct stat status {};
  return ::stat(name.c_str(), &status) == 0 && S_ISFIFO(status.st_mode);
}

// Truncates the file, but only if it is not empty: some file systems flush a truncated
// file on close, and every new output would then wait for the disk.
bool truncate(const FileDescriptor& file) {
  struct stat status {};
  if (::fstat(file.get(), &status) != 0) {
    return false;
  }
  if (status.st_size == 0) {
    return true;
  }
  int result = 0;
  do {
    result = ::ftruncate(file.get(), 0);
  } while (result != 0 && errno == EINTR);
  return result == 0;
}

// Opens or creates `name`. Refuses a pipe, because opening it would block until it has
// a reader.
FileDescriptor open_without_truncating(const std::string& name) {
  if (is_pipe(name)) {
    throw not_opened(name, 0);
  }
  FileDescriptor file(name, O_WRONLY | O_CREAT);
  if (!file.is_open()) {
    throw not_opened(name, errno);
  }
  return file;
}

}  // namespace

OutputFile::OutputFile(std::string name, const FilesInUse& in_use)
    : name_(std::move(name)),
      file_(open_without_truncating(name_)),
      buffer_(kPieceSize) {
  lock_and_truncate(in_use);
}

// Truncates the file after checking that no one else uses it.
void OutputFile::lock_and_truncate(const FilesInUse& in_use) {
  struct stat status {};
  if (::fstat(file_.get(), &status) != 0) {
    throw not_opened(name_, errno);
  }
  identity_ = regular_file(status);
  if (!identity_) {
    return;  // a device has no content to truncate
  }
  if (in_use.contains(identity_)) {
    throw not_opened(name_, 0);
  }
  if (is_locked_by_another(file_)) {
    throw FileFault(FileFault::Kind::kWrittenByAnotherRun, name_, 0);
  }
  // Truncating, rather than renaming a new file, preserves owner, group, access lists
  // and attributes. It also preserves the content if a new file could not be created.
  if (!truncate(file_)) {
    throw not_opened(name_, errno);
  }
}

OutputFile::~OutputFile() {
  if (file_.is_open()) {
    // Another failure ended the run and is reported, so this one is ignored.
    [[maybe_unused]] const bool written = file_.write_all({buffer_.data(), used_});
  }
}

void OutputFile::write(std::string_view text) {
  while (!text.empty()) {
    const std::string_view part = text.substr(0, kMaxReserved);
    part.copy(reserve(part.size()), part.size());
    commit(part.size());
    text.remove_prefix(part.size());
  }
}

char* OutputFile::reserve(std::size_t size) {
  if (used_ + size > buffer_.size()) {
    flush();
  }
  return buffer_.data() + used_;
}

void OutputFile::close() {
  flush();
  if (!file_.close()) {
    throw FileFault(FileFault::Kind::kNotWritten, name_, errno);
  }
}

void OutputFile::flush() {
  const bool written = file_.write_all({buffer_.data(), used_});
  used_ = 0;
  if (!written) {
    throw FileFault(FileFault::Kind::kNotWritten, name_, errno);
  }
}

}  // namespace veldmark
