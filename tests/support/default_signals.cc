// Lets signals act in the tests of a program, and in what they start, as they do at a
// prompt. A job in the background, or one under nohup, begins with some of them
// ignored.

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
