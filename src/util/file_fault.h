// Thrown by the core for a file that it cannot use; the front end writes the message.

#ifndef VELDMARK_UTIL_FILE_FAULT_H_
#define VELDMARK_UTIL_FILE_FAULT_H_

#include <exception>
#include <string>
#include <utility>

namespace veldmark {

class FileFault : public std::exception {
 public:
  enum class Kind {
    kNotOpened,
    kWrittenByAnotherRun,  // and therefore not opened
    kNotRead,
    kNotWritten,
  };

  // `error_number` is an errno value; 0 where no system call failed but the file must
  // not be used: a folder, a pipe, a file that this run already reads or writes.
  FileFault(Kind kind, std::string name, int error_number)
      : kind_(kind), name_(std::move(name)), error_number_(error_number) {}

  [[nodiscard]] Kind kind() const { return kind_; }
  [[nodiscard]] const std::string& name() const { return name_; }
  [[nodiscard]] int error_number() const { return error_number_; }
  [[nodiscard]] const char* what() const noexcept override { return name_.c_str(); }

 private:
  Kind kind_;
  std::string name_;
  int error_number_;
};

}  // namespace veldmark

#endif  // VELDMARK_UTIL_FILE_FAULT_H_
