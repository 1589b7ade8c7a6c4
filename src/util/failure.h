// The two errors that end a companion program. The text says what is wrong, without
// the program's name and without a newline.

#ifndef VELDMARK_UTIL_FAILURE_H_
#define VELDMARK_UTIL_FAILURE_H_

#include <exception>
#include <new>
#include <stdexcept>

namespace veldmark {

// The command line is wrong; the program exits with status 2.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// A file cannot be read or written, or its content is wrong; exit status 1.
struct Failure : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Returns the reason as text for the user: what() of std::bad_alloc is not meant for
// one.
inline const char* reason_of(const std::exception& error) {
  return dynamic_cast<const std::bad_alloc*>(&error) != nullptr ? "not enough memory"
                                                                : error.what();
}

}  // namespace veldmark

#endif  // VELDMARK_UTIL_FAILURE_H_
