#include "util/file_naming.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace veldmark {
namespace {

bool stands(const std::string& name) {
  struct stat found {};
  return ::lstat(name.c_str(), &found) == 0 || errno != ENOENT;
}

bool rename_plainly(const std::string& from, const std::string& to) {
  return std::rename(from.c_str(), to.c_str()) == 0;
}

}  // namespace

// A new name for a file is made only where there is none, unlike by renaming.
bool rename_to_free_name(const std::string& from, const std::string& to) {
  if (::link(from.c_str(), to.c_str()) == 0) {
    // The file is whole under its new name, whether the old one goes or not.
    ::unlink(from.c_str());
    return true;
  }
  if (errno != EPERM && errno != EOPNOTSUPP && errno != ENOSYS) {
    return false;
  }
  if (stands(to)) {
    errno = EEXIST;
    return false;
  }
  return rename_plainly(from, to);
}

bool exchange_names(const std::string& one, const std::string& other) {
#ifdef RENAME_EXCHANGE
  return ::renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE) ==
         0;
#else
  errno = ENOSYS;
  return false;
#endif
}

}  // namespace veldmark
