// Runs the program as a process that a test gives answers to while it runs.

#ifndef VELDMARK_TESTS_DRIVER_RUNNING_PROGRAM_H_
#define VELDMARK_TESTS_DRIVER_RUNNING_PROGRAM_H_

#include <sys/types.h>

#include <functional>
#include <string>

namespace veldmark::testing {

// Creates scripts `clear` and `ls` in the folder "bin" that write their name and
// arguments.
void make_stand_ins();

class RunningProgram {
 public:
  // Starts the program in the current folder with these scripts in its path and its
  // streams on pipes. `prepare` is called in the new process.
  explicit RunningProgram(const std::function<void()>& prepare = [] {});

  // Kills the program if it is still running.
  ~RunningProgram();

  RunningProgram(const RunningProgram&) = delete;
  RunningProgram& operator=(const RunningProgram&) = delete;

  void type(const std::string& answers) const;

  // Reads the output until it ends with `text`. Fails the test if that does not happen.
  void wait_for(const std::string& text);

  // Waits until the program sleeps or has ended.
  void wait_until_idle() const;

  // Waits until at least `size` bytes of the output can be read.
  void wait_for_unread(int size) const;

  // Returns the name of the file that a descriptor of the program refers to.
  [[nodiscard]] std::string file_of(int descriptor) const;

  // Closes the input and waits for the program. Returns the exit status, -N after
  // signal N.
  int end();

  // The output read so far; all of it after `end`.
  [[nodiscard]] const std::string& screen() const { return screen_; }

  // Returns standard error. Requires that `end` was called.
  [[nodiscard]] const std::string& errors() const { return errors_; }

 private:
  // Reads more output. Returns false at its end, or if none comes.
  bool read_screen();

  pid_t process_ = -1;
  int input_ = -1;
  int output_ = -1;
  int error_ = -1;
  std::string screen_;
  std::string errors_;
};

}  // namespace veldmark::testing

#endif  // VELDMARK_TESTS_DRIVER_RUNNING_PROGRAM_H_
