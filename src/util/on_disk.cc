#include "util/on_disk.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "util/interrupt_watch.h"

namespace veldmark {

// Some file systems cannot sync and say so with EINVAL or ENOTSUP; that is no failure.
bool sync_to_disk(const FileDescriptor& file) {
  int result = 0;
  do {
    InterruptWatch::throw_if_caught();
    result = ::fsync(file.get());
  } while (result != 0 && errno == EINTR);
  return result == 0 || errno == EINVAL || errno == ENOTSUP;
}

bool flush(const FileDescriptor& file) {
  FileDescriptor copy = duplicate_of(file.get());
  return copy.is_open() && copy.close();
}

void sync_folder_of(const std::string& name) {
  const std::filesystem::path folder = std::filesystem::path(name).parent_path();
  const FileDescriptor opened(folder.empty() ? "." : folder.string(), O_RDONLY);
  if (opened.is_open()) {
    ::fsync(opened.get());
  }
}

}  // namespace veldmark
