#include "catalogue/grid_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <utility>

#include "util/file_fault.h"

namespace veldmark {
namespace {

// Returns the file's status; st_mode is 0 if the system call fails.
struct stat status_of(const FileDescriptor& file) {
  struct stat status {};
  ::fstat(file.get(), &status);
  return status;
}

}  // namespace

GridFile::GridFile(std::string name) : name_(std::move(name)), file_(name_, O_RDONLY) {
  if (!file_.is_open()) {
    throw FileFault(FileFault::Kind::kNotOpened, name_, errno);
  }
  const struct stat status = status_of(file_);
  if (S_ISDIR(status.st_mode)) {
    throw FileFault(FileFault::Kind::kNotOpened, name_, EISDIR);
  }
  identity_ = regular_file(status);
}

std::size_t GridFile::read(char* buffer, std::size_t size) const {
  const std::ptrdiff_t count = file_.read(buffer, size);
  if (count < 0) {
    throw FileFault(FileFault::Kind::kNotRead, name_, errno);
  }
  return static_cast<std::size_t>(count);
}

bool GridFile::read_at(std::int64_t offset, char* buffer, std::size_t size) const {
  return file_.read_at(offset, buffer, size);
}

std::int64_t GridFile::size() const {
  const struct stat status = status_of(file_);
  return S_ISREG(status.st_mode) ? status.st_size : 0;
}

}  // namespace veldmark
