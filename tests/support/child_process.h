// A program in a process of its own, which a test can hold up in the middle of its
// work.

#ifndef VELDMARK_TESTS_SUPPORT_CHILD_PROCESS_H_
#define VELDMARK_TESTS_SUPPORT_CHILD_PROCESS_H_

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

namespace veldmark::testing {

class ChildProcess {
 public:
  // Starts a program in the current folder. Its output goes to the file "output", and
  // its messages to "messages" or to an open descriptor.
  //
  //   command     the program and its arguments
  //   messages    -1 for the file
  explicit ChildProcess(const std::vector<std::string>& command, int messages = -1);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ChildProcess(ChildProcess&&) = delete;
  ChildProcess& operator=(ChildProcess&&) = delete;

  // Waits until a file has content and stops the process there (SIGSTOP). Returns false
  // when the process ended before.
  bool stop_once_written(const std::string& file);

  void send(int signal) const;

  // Waits for the end. Returns the exit status, -N after signal N.
  int wait();

 private:
  pid_t process_;
  int status_ = 0;
  bool ended_ = false;
};

// Starts a process that is stopped once `file` has content, and hands it to `action`. A
// busy machine can let a process end before it is stopped: then once more.
void with_stopped_process(const std::vector<std::string>& command,
                          const std::string& file,
                          const std::function<void(ChildProcess&)>& action,
                          int messages = -1);

}  // namespace veldmark::testing

#endif  // VELDMARK_TESTS_SUPPORT_CHILD_PROCESS_H_
