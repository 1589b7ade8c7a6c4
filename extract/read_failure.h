// Words the failure of reading a file.

#ifndef VELDMARK_EXTRACT_READ_FAILURE_H_
#define VELDMARK_EXTRACT_READ_FAILURE_H_

#include <string>

namespace veldmark::extract {

// Throws Failure "cannot read 'NAME': reason".
//
//   error_number   errno of the failed call; 0 if the file ended before its size
[[noreturn]] void fail_to_read(const std::string& name, int error_number);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_READ_FAILURE_H_
