#include "util/file_naming.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace veldmark {
namespace {

bool may_exist(const std::string& name) {
  struct stat found {};
  return ::lstat(name.c_str(), &found) == 0 || errno != ENOENT;
}

bool rename_plainly(const std::string& from, const std::string& to) {
  return std::rename(from.c_str(), to.c_str()) == 0;
}

}  // namespace

// Unlike rename(), link() fails if the new name exists.
bool rename_to_free_name(const std::string& from, const std::string& to) {
  if (::link(from.c_str(), to.c_str()) == 0) {
    // The file is complete under its new name, even if this fails.
    ::unlink(from.c_str());
    return true;
  }
  if (errno != EPERM && errno != EOPNOTSUPP && errno != ENOSYS) {
    return false;
  }
  if (may_exist(to)) {
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
