#include "driver/running_program.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <utility>

#include "support/temporary_folder.h"

namespace veldmark::testing {
namespace {

constexpr int kMostMilliseconds = 60'000;

struct Pipe {
  Pipe() {
    std::array<int, 2> ends{-1, -1};
    EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
    read_end = ends[0];
    write_end = ends[1];
  }

  int read_end = -1;
  int write_end = -1;
};

// Never returns.
void become_program(const std::string& search_path, const Pipe& input,
                    const Pipe& output, const Pipe& error,
                    const std::function<void()>& prepare) {
  // The test itself may have been started with ignored signals.
  for (const int signal : {SIGPIPE, SIGHUP, SIGINT, SIGTERM}) {
    ::signal(signal, SIG_DFL);
  }
  ::dup2(input.read_end, STDIN_FILENO);
  ::dup2(output.write_end, STDOUT_FILENO);
  ::dup2(error.write_end, STDERR_FILENO);
  ::setenv("PATH", search_path.c_str(), 1);
  prepare();
  ::execl(VELDMARK_PROGRAM, VELDMARK_PROGRAM, nullptr);
  ::_exit(127);
}

std::string rest_of(int descriptor) {
  std::string text;
  std::array<char, 4096> piece{};
  ssize_t count = 0;
  while ((count = ::read(descriptor, piece.data(), piece.size())) > 0) {
    text.append(piece.data(), static_cast<std::size_t>(count));
  }
  return text;
}

// Returns the state of a process: R is running, S is sleeping, Z has ended.
char state_of(pid_t process) {
  std::ifstream status("/proc/" + std::to_string(process) + "/stat");
  std::string text;
  std::getline(status, text);
  const std::size_t name_end = text.rfind(')');
  return name_end == std::string::npos ? '?' : text[name_end + 2];
}

void wait_until(const std::function<bool()>& holds) {
  for (int i = 0; i < kMostMilliseconds; ++i) {
    if (holds()) {
      return;
    }
    ::usleep(1000);
  }
  FAIL() << "waited in vain";
}

}  // namespace

void make_stand_ins() {
  std::filesystem::create_directory("bin");
  for (const char* command : {"clear", "ls"}) {
    const std::string path = std::string("bin/") + command;
    write_file(path, "#!/bin/sh\necho \"$ " + std::string(command) + " $*\"\n");
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
  }
}

RunningProgram::RunningProgram(const std::function<void()>& prepare) {
  ::signal(SIGPIPE, SIG_IGN);  // typing to a program that has ended fails, no more
  make_stand_ins();
  const char* path = std::getenv("PATH");
  const std::string search_path = (std::filesystem::current_path() / "bin").string() +
                                  ":" + (path != nullptr ? path : "");
  const Pipe input;
  const Pipe output;
  const Pipe error;
  process_ = ::fork();
  if (process_ == 0) {
    become_program(search_path, input, output, error, prepare);
  }
  ::close(input.read_end);
  ::close(output.write_end);
  ::close(error.write_end);
  input_ = input.write_end;
  output_ = output.read_end;
  error_ = error.read_end;
}

RunningProgram::~RunningProgram() {
  if (process_ > 0) {
    ::kill(process_, SIGKILL);
    end();
  }
}

void RunningProgram::type(const std::string& answers) const {
  EXPECT_EQ(::write(input_, answers.data(), answers.size()),
            static_cast<ssize_t>(answers.size()));
}

void RunningProgram::wait_for(const std::string& text) {
  while (!screen_.ends_with(text)) {
    if (!read_screen()) {
      FAIL() << "'" << text << "' never came: " << screen_;
    }
  }
}

bool RunningProgram::read_screen() {
  pollfd screen{.fd = output_, .events = POLLIN, .revents = 0};
  std::array<char, 4096> piece{};
  if (::poll(&screen, 1, kMostMilliseconds) <= 0) {
    return false;
  }
  const ssize_t count = ::read(output_, piece.data(), piece.size());
  if (count <= 0) {
    return false;
  }
  screen_.append(piece.data(), static_cast<std::size_t>(count));
  return true;
}

void RunningProgram::wait_until_idle() const {
  wait_until([this] {
    const char state = state_of(process_);
    return state == 'S' || state == 'Z';
  });
}

void RunningProgram::wait_for_unread(int size) const {
  wait_until([&] {
    int unread = 0;
    EXPECT_EQ(::ioctl(output_, FIONREAD, &unread), 0);
    return unread >= size;
  });
}

std::string RunningProgram::file_of(int descriptor) const {
  return std::filesystem::read_symlink("/proc/" + std::to_string(process_) + "/fd/" +
                                       std::to_string(descriptor));
}

int RunningProgram::end() {
  ::close(std::exchange(input_, -1));
  while (read_screen()) {
  }
  errors_ = rest_of(error_);
  int status = 0;
  EXPECT_EQ(::waitpid(process_, &status, 0), process_);
  process_ = -1;
  ::close(output_);
  ::close(error_);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

}  // namespace veldmark::testing
