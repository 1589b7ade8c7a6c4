// The two ways in which a companion program gives up. The text says what is wrong,
// without the program's name and without a line break.

#ifndef VELDMARK_UTIL_FAILURE_H_
#define VELDMARK_UTIL_FAILURE_H_

#include <exception>
#include <new>
#include <stdexcept>

namespace veldmark {

// The command line cannot be understood; the program ends with status 2.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// A file cannot be read, is at fault or cannot be written; status 1.
struct Failure : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// What went wrong, in words: the library's own names of its exceptions are none.
inline const char* reason_of(const std::exception& error) {
  return dynamic_cast<const std::bad_alloc*>(&error) != nullptr ? "not enough memory"
                                                                : error.what();
}

}  // namespace veldmark

#endif  // VELDMARK_UTIL_FAILURE_H_
