// A lock on an open file, so that two runs don't write it at once.

#ifndef VELDMARK_UTIL_FILE_LOCK_H_
#define VELDMARK_UTIL_FILE_LOCK_H_

#include <sys/file.h>

#include <cerrno>

#include "util/file_descriptor.h"

namespace veldmark {

// Locks the file until it is closed. Returns true when another run holds the lock.
// File systems without locks know nothing of other runs: false.
inline bool is_locked_by_another(const FileDescriptor& file) {
  int result = 0;
  do {
    result = ::flock(file.get(), LOCK_EX | LOCK_NB);
  } while (result != 0 && errno == EINTR);
  return result != 0 && errno == EWOULDBLOCK;
}

// Gives the lock up before that.
inline void unlock(const FileDescriptor& file) { ::flock(file.get(), LOCK_UN); }

}  // namespace veldmark

#endif  // VELDMARK_UTIL_FILE_LOCK_H_
