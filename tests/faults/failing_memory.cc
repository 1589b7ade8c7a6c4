// Makes one memory allocation fail. Preloaded (LD_PRELOAD), it replaces the allocation
// functions of the C library, which `operator new` calls as well.
//
//   VELDMARK_FAULT=NAME<tab>FILE<tab>N...   the N-th request fails; other fields are
//                                           ignored
//   VELDMARK_CALL_LOG=FILE                  a line as failing_calls.cc writes them for
//                                           the request that failed, and at the exit
//                                           one with the number of all
//
// Requests are counted from before `main` on, without those of shell commands.
// Not for programs with an address sanitizer, which has allocation functions of its
// own.

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

extern "C" {
// The C library's own functions, under their internal names.
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
}

namespace {

bool counting = false;
long requests = 0;
long failing_request = 0;
int log_descriptor = -1;

void log_request(std::size_t size, const char* mark) {
  char line[100];
  const int length = std::snprintf(line, sizeof line, "malloc\t-\t%ld\t%zu\t0%s\n",
                                   requests, size, mark);
  [[maybe_unused]] const ssize_t written =
      write(log_descriptor, line, static_cast<std::size_t>(length));
}

bool fails(std::size_t size) {
  if (!counting || ++requests != failing_request) return false;
  log_request(size, "\tfault");
  errno = ENOMEM;
  return true;
}

__attribute__((constructor)) void start() {
  const char* fault = std::getenv("VELDMARK_FAULT");
  const char* number = fault == nullptr ? nullptr : std::strchr(fault, '\t');
  number = number == nullptr ? nullptr : std::strchr(number + 1, '\t');
  if (number != nullptr) failing_request = std::strtol(number + 1, nullptr, 10);
  const char* log_name = std::getenv("VELDMARK_CALL_LOG");
  if (log_name != nullptr) {
    log_descriptor = open(log_name, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  }
  unsetenv("LD_PRELOAD");
  counting = true;
}

__attribute__((destructor)) void end() {
  counting = false;
  log_request(0, "");
}

}  // namespace

extern "C" {

void* malloc(std::size_t size) { return fails(size) ? nullptr : __libc_malloc(size); }

void* calloc(std::size_t count, std::size_t size) {
  return fails(count * size) ? nullptr : __libc_calloc(count, size);
}

void* realloc(void* memory, std::size_t size) {
  return fails(size) ? nullptr : __libc_realloc(memory, size);
}
}
