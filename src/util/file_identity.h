// Identifies a file by device and inode, so that links to the same file are recognised.

#ifndef VELDMARK_UTIL_FILE_IDENTITY_H_
#define VELDMARK_UTIL_FILE_IDENTITY_H_

#include <sys/stat.h>
#include <sys/types.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace veldmark {

struct FileIdentity {
  dev_t device;
  ino_t inode;

  friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

// Returns the identity of the file that `status` describes. Returns nullopt unless it
// is a regular file: a device such as /dev/null may be used as several files at once.
inline std::optional<FileIdentity> regular_file(const struct stat& status) {
  if (!S_ISREG(status.st_mode)) {
    return std::nullopt;
  }
  return FileIdentity{.device = status.st_dev, .inode = status.st_ino};
}

// Returns the same for the file that `name` refers to; also nullopt if it cannot be
// looked up.
inline std::optional<FileIdentity> regular_file(const std::string& name) {
  struct stat status {};
  return ::stat(name.c_str(), &status) == 0 ? regular_file(status) : std::nullopt;
}

// The files that a search reads or writes. None may be used twice.
class FilesInUse {
 public:
  void add(const std::optional<FileIdentity>& file) {
    if (file) {
      files_.push_back(*file);
    }
  }

  [[nodiscard]] bool contains(const std::optional<FileIdentity>& file) const {
    return file && std::find(files_.begin(), files_.end(), *file) != files_.end();
  }

 private:
  std::vector<FileIdentity> files_;
};

}  // namespace veldmark

#endif  // VELDMARK_UTIL_FILE_IDENTITY_H_
