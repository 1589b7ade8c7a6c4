// Which file a name or a descriptor leads to, by whatever name or link.

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

// Returns which file `status` is of. nullopt for anything but a regular file: devices
// such as /dev/null may stand in for several files at once.
inline std::optional<FileIdentity> regular_file(const struct stat& status) {
  if (!S_ISREG(status.st_mode)) {
    return std::nullopt;
  }
  return FileIdentity{.device = status.st_dev, .inode = status.st_ino};
}

// The same for the file that `name` leads to; nullopt also where there is none.
inline std::optional<FileIdentity> regular_file(const std::string& name) {
  struct stat status {};
  return ::stat(name.c_str(), &status) == 0 ? regular_file(status) : std::nullopt;
}

// The files that a search reads or writes; none may serve twice.
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
