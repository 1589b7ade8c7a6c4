// The program as a process beside the test, which types answers while it runs.

#ifndef VELDMARK_TESTS_DRIVER_RUNNING_PROGRAM_H_
#define VELDMARK_TESTS_DRIVER_RUNNING_PROGRAM_H_

#include <sys/types.h>

#include <functional>
#include <string>

namespace veldmark::testing {

// Puts stand-ins for `clear` and `ls` into the folder "bin", which write their name and
// arguments.
void make_stand_ins();

class RunningProgram {
 public:
  // Starts the program in the current folder, with stand-ins, its streams on pipes.
  // `prepare` is called in the new process.
  explicit RunningProgram(const std::function<void()>& prepare = [] {});

  // Ends it where the test hasn't seen its end.
  ~RunningProgram();

  RunningProgram(const RunningProgram&) = delete;
  RunningProgram& operator=(const RunningProgram&) = delete;

  void type(const std::string& answers) const;

  // Reads the screen until it ends with `text`. Fails the test where that doesn't
  // happen.
  void wait_for(const std::string& text);

  // Waits until the program sleeps, waiting for something, or has ended.
  void wait_until_idle() const;

  // Waits until at least `size` bytes of the screen wait to be read.
  void wait_for_unread(int size) const;

  // Returns the name of the file that a descriptor of the program leads to.
  [[nodiscard]] std::string file_of(int descriptor) const;

  // Ends the input and waits for the end. Result: the exit status, -N after signal N.
  int end();

  // What was read of the screen; all of it after `end`.
  [[nodiscard]] const std::string& screen() const { return screen_; }

  // Standard error, after `end`.
  [[nodiscard]] const std::string& errors() const { return errors_; }

 private:
  // Reads what comes next; false at the end of the screen or when nothing comes.
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
