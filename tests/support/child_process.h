// Runs a program as a process that a test can stop in the middle of its work.

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

  // Waits until a file has content and stops the process then (SIGSTOP). Returns false
  // if the process ended before.
  bool stop_once_written(const std::string& file);

  void send(int signal) const;

  // Waits for the end. Returns the exit status, -N after signal N.
  int wait();

 private:
  pid_t process_;
  int status_ = 0;
  bool ended_ = false;
};

// Starts a process, stops it once `file` has content, and passes it to `action`. On a
// busy machine the process may end before it is stopped; then this is repeated.
void with_stopped_process(const std::vector<std::string>& command,
                          const std::string& file,
                          const std::function<void(ChildProcess&)>& action,
                          int messages = -1);

}  // namespace veldmark::testing

#endif  // VELDMARK_TESTS_SUPPORT_CHILD_PROCESS_H_
