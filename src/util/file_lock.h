// A lock on an open file, so that two runs don't write it at the same time.

#ifndef VELDMARK_UTIL_FILE_LOCK_H_
#define VELDMARK_UTIL_FILE_LOCK_H_

#include <sys/file.h>

#include <cerrno>

#include "util/file_descriptor.h"

namespace veldmark {

// Tries to lock the file until it is closed. Returns true if another run holds the
// lock; false also on file systems without locks.
inline bool is_locked_by_another(const FileDescriptor& file) {
  int result = 0;
  do {
    result = ::flock(file.get(), LOCK_EX | LOCK_NB);
  } while (result != 0 && errno == EINTR);
  return result != 0 && errno == EWOULDBLOCK;
}

// Releases the lock while the file stays open.
inline void unlock(const FileDescriptor& file) {
  while (::flock(file.get(), LOCK_UN) != 0 && errno == EINTR) {
  }
}

}  // namespace veldmark

#endif  // VELDMARK_UTIL_FILE_LOCK_H_
