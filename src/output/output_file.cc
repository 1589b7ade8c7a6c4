#include "output/output_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <utility>

namespace veldmark {
namespace {

constexpr std::size_t kBufferSize = std::size_t{256} * 1024;

bool is_pipe(const std::string& name) {
  struct stat status {};
  return ::stat(name.c_str(), &status) == 0 && S_ISFIFO(status.st_mode);
}

// Is another run writing the file? It stays locked for this one until it is closed.
// File systems without locks say nothing of other runs.
bool is_locked_by_another(const FileDescriptor& file) {
  int result = 0;
  do {
    result = ::flock(file.get(), LOCK_EX | LOCK_NB);
  } while (result != 0 && errno == EINTR);
  return result != 0 && errno == EWOULDBLOCK;
}

bool empty(const FileDescriptor& file) {
  int result = 0;
  do {
    result = ::ftruncate(file.get(), 0);
  } while (result != 0 && errno == EINTR);
  return result == 0;
}

// Opens `name` as it is. Opening a pipe would wait for its reader.
FileDescriptor open_unchanged(const std::string& name, Channel channel) {
  if (is_pipe(name)) {
    throw cannot_open(name, channel);
  }
  FileDescriptor file(name, O_WRONLY | O_CREAT);
  if (!file.is_open()) {
    throw cannot_open(name, channel);
  }
  return file;
}

}  // namespace

OutputFile::OutputFile(std::string name, Channel channel, const FilesInUse& in_use)
    : name_(std::move(name)),
      channel_(channel),
      file_(open_unchanged(name_, channel_)),
      buffer_(kBufferSize) {
  take(in_use);
}

// Empties the opened file once it's certain that nobody needs what it holds.
void OutputFile::take(const FilesInUse& in_use) {
  struct stat status {};
  if (::fstat(file_.get(), &status) != 0) {
    throw cannot_open(name_, channel_);
  }
  identity_ = regular_file(status);
  if (!identity_) {
    return;  // a device, which holds nothing
  }
  if (in_use.contains(identity_)) {
    throw cannot_open(name_, channel_);
  }
  if (is_locked_by_another(file_)) {
    throw cannot_open(name_ + ": another run is writing it", channel_);
  }
  // In place rather than by a new file: owner, group, access lists and attributes stay,
  // and so does the old content where the new file couldn't be made.
  if (!empty(file_)) {
    throw cannot_open(name_, channel_);
  }
}

OutputFile::~OutputFile() {
  if (file_.is_open()) {
    // The run is ending for another reason, which its report names.
    [[maybe_unused]] const bool written = file_.write_all({buffer_.data(), used_});
  }
}

void OutputFile::write(std::string_view text) {
  while (!text.empty()) {
    const std::string_view piece = text.substr(0, kMostRoom);
    piece.copy(room(piece.size()), piece.size());
    keep(piece.size());
    text.remove_prefix(piece.size());
  }
}

char* OutputFile::room(std::size_t size) {
  if (used_ + size > buffer_.size()) {
    write_out();
  }
  return buffer_.data() + used_;
}

void OutputFile::close() {
  write_out();
  if (!file_.close()) {
    throw cannot_write(name_, errno, Operation::kWrite, channel_);
  }
}

void OutputFile::write_out() {
  const bool written = file_.write_all({buffer_.data(), used_});
  used_ = 0;
  if (!written) {
    throw cannot_write(name_, errno, Operation::kWrite, channel_);
  }
}

}  // namespace veldmark
