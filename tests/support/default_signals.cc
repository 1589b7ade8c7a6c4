// Resets signals to their default actions for a test program and the processes it
// starts. A background job, or one under nohup, starts with some of them ignored.

#include <csignal>
#include <initializer_list>

namespace {

const bool kDone = [] {
  for (const int number : {SIGINT, SIGHUP, SIGQUIT, SIGTERM}) {
    std::signal(number, SIG_DFL);
  }
  return true;
}();

}  // namespace
