// Runs a program and prints its time and memory:
//
//   timed_run INPUT PROGRAM [ARGUMENT]...
//
// INPUT is the program's standard input; its standard output is discarded. Prints one
// line: seconds from the start of the process to its end, peak resident memory in KiB,
// exit status (128 and the signal's number after a signal).
//
// A separate program, because the peak that the system reports for a process is at
// least that of the process that started it: a large parent would hide a small program.

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

int fail(const char* what, int error) {
  std::fprintf(stderr, "timed_run: %s: %s\n", what, std::strerror(error));
  return EXIT_FAILURE;
}

int exit_status(int status) {
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fputs("usage: timed_run INPUT PROGRAM [ARGUMENT]...\n", stderr);
    return EXIT_FAILURE;
  }
  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_addopen(&files, STDIN_FILENO, argv[1], O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);

  const auto start = std::chrono::steady_clock::now();
  pid_t process = 0;
  const int error = posix_spawn(&process, argv[2], &files, nullptr, argv + 2, environ);
  if (error != 0) {
    return fail(argv[2], error);
  }
  int status = 0;
  struct rusage usage {};
  if (::wait4(process, &status, 0, &usage) != process) {
    return fail("wait4", errno);
  }
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
  // The C library declares this member in a union to fix its width.
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-union-access)
  const long peak = usage.ru_maxrss;
  std::printf("%.9f %ld %d\n", taken.count(), peak, exit_status(status));
  return EXIT_SUCCESS;
}
