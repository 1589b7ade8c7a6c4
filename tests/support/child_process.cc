#include "support/child_process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <system_error>
#include <thread>

namespace veldmark::testing {
namespace {

constexpr int kFileMode = 0666;

bool has_content(const std::string& file) {
  std::error_code not_there;
  const auto size = std::filesystem::file_size(file, not_there);
  return !not_there && size > 0;
}

void become(const std::vector<std::string>& command, int messages) {
  if (messages < 0) {
    messages = ::open("messages", O_WRONLY | O_CREAT | O_TRUNC, kFileMode);
  }
  ::dup2(messages, STDERR_FILENO);
  ::dup2(::open("output", O_WRONLY | O_CREAT | O_TRUNC, kFileMode), STDOUT_FILENO);
  std::vector<char*> arguments;
  for (const std::string& argument : command) {
    arguments.push_back(const_cast<char*>(argument.c_str()));
  }
  arguments.push_back(nullptr);
  ::execv(arguments[0], arguments.data());
  ::_exit(127);
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& command, int messages)
    : process_(::fork()) {
  if (process_ == 0) {
    become(command, messages);
  }
}

ChildProcess::~ChildProcess() {
  if (!ended_) {
    ::kill(process_, SIGKILL);
    ::waitpid(process_, &status_, 0);
  }
}

bool ChildProcess::stop_once_written(const std::string& file) {
  while (!has_content(file)) {
    if (::waitpid(process_, &status_, WNOHANG) != 0) {
      ended_ = true;
      return false;
    }
    std::this_thread::sleep_for(std::chrono::microseconds(100));
  }
  ::kill(process_, SIGSTOP);
  ::waitpid(process_, &status_, WUNTRACED);
  ended_ = !WIFSTOPPED(status_);
  // It may have been stopped after it had finished its work.
  return !ended_ && has_content(file);
}

void ChildProcess::send(int signal) const { ::kill(process_, signal); }

int ChildProcess::wait() {
  if (!ended_) {
    ::waitpid(process_, &status_, 0);
    ended_ = true;
  }
  return WIFEXITED(status_) ? WEXITSTATUS(status_) : -WTERMSIG(status_);
}

void with_stopped_process(const std::vector<std::string>& command,
                          const std::string& file,
                          const std::function<void(ChildProcess&)>& action,
                          int messages) {
  constexpr int kTries = 50;
  for (int i = 0; i < kTries; ++i) {
    std::filesystem::remove(file);
    ChildProcess process(command, messages);
    if (process.stop_once_written(file)) {
      action(process);
      return;
    }
  }
  ADD_FAILURE() << command.at(0) << " always ended before it could be stopped";
}

}  // namespace veldmark::testing
