// Makes one system call of a program fail. Preloaded (LD_PRELOAD), it sees every system
// call of the process from before `main` to the exit, including those inside the C and
// C++ libraries: the C library writes console output without calling `write` through a
// symbol that could be wrapped.
//
// The kernel hands the calls over (Syscall User Dispatch: a SIGSYS for each call, not
// passed on to children). Linux 5.11 or newer on x86-64.
//
//   VELDMARK_CALL_LOG=FILE    a line for each call, fields separated by tabs: name, the
//                             file it is about without its folder, its number among
//                             the calls of that name and file from 1, its third
//                             argument (what is read and written has its size there),
//                             result, and "fault" for the altered call
//   VELDMARK_FAULT=...        the call to alter: name, file, number and WHAT,
//                             separated by tabs; with a fifth field "on", all later
//                             calls of that name and file are altered as well
//
//   WHAT      error=E     fails with errno E; a close still closes the file
//             count=K     reads or writes K bytes at most
//             half        reads or writes half of the requested bytes
//             end         reads 0 bytes, as at the end of the file
//             shrink=S    the file is cut to S bytes just before the call
//             signal=S    signal S arrives just before the call
//
// The three standard streams are the files "standard-input", "-output" and "-error", a
// terminal on another descriptor is "terminal"; a call that concerns no file has "-".
//
// The clock stands still, so that outputs that contain the time are reproducible.
//
// The calls of shell commands are neither seen nor counted; each command counts as one
// call "system", which can fail as well.

#include <dlfcn.h>
#include <fcntl.h>
#include <linux/prctl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <ucontext.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <initializer_list>

#ifndef __x86_64__
#error "The system calls are told apart by their x86-64 numbers and registers."
#endif

namespace {

// Nothing here may allocate, throw or change errno: it runs inside calls of other code.

// How a call names its file, and in which argument.
enum class Names { kPath, kPathInFolder, kDescriptor, kNothing };

struct Kind {
  long number;
  const char* name;
  Names by;
};

constexpr long kShellCommand = -1;
constexpr long kUnknown = -2;

constexpr Kind kKinds[] = {
    {SYS_open, "open", Names::kPath},
    {SYS_openat, "openat", Names::kPathInFolder},
    {SYS_read, "read", Names::kDescriptor},
    {SYS_readv, "readv", Names::kDescriptor},
    {SYS_pread64, "pread", Names::kDescriptor},
    {SYS_write, "write", Names::kDescriptor},
    {SYS_writev, "writev", Names::kDescriptor},
    {SYS_pwrite64, "pwrite", Names::kDescriptor},
    {SYS_close, "close", Names::kDescriptor},
    {SYS_rename, "rename", Names::kPath},
    {SYS_renameat, "renameat", Names::kPathInFolder},
    {SYS_renameat2, "renameat2", Names::kPathInFolder},
    {SYS_link, "link", Names::kPath},
    {SYS_unlink, "unlink", Names::kPath},
    {SYS_unlinkat, "unlinkat", Names::kPathInFolder},
    {SYS_stat, "stat", Names::kPath},
    {SYS_lstat, "lstat", Names::kPath},
    {SYS_newfstatat, "fstatat", Names::kPathInFolder},
    {SYS_statx, "statx", Names::kPathInFolder},
    {SYS_fstat, "fstat", Names::kDescriptor},
    {SYS_statfs, "statfs", Names::kPath},
    {SYS_fstatfs, "fstatfs", Names::kDescriptor},
    {SYS_access, "access", Names::kPath},
    {SYS_faccessat, "faccessat", Names::kPathInFolder},
    {SYS_faccessat2, "faccessat2", Names::kPathInFolder},
    {SYS_fchmod, "fchmod", Names::kDescriptor},
    {SYS_ftruncate, "ftruncate", Names::kDescriptor},
    {SYS_fsync, "fsync", Names::kDescriptor},
    {SYS_flock, "flock", Names::kDescriptor},
    {SYS_lseek, "lseek", Names::kDescriptor},
    {SYS_ioctl, "ioctl", Names::kDescriptor},
    {SYS_fcntl, "fcntl", Names::kDescriptor},
    {SYS_readlink, "readlink", Names::kPath},
    {SYS_getcwd, "getcwd", Names::kNothing},
    {SYS_poll, "poll", Names::kNothing},
    {SYS_mmap, "mmap", Names::kNothing},
    {SYS_mremap, "mremap", Names::kNothing},
    {SYS_munmap, "munmap", Names::kNothing},
    {SYS_mprotect, "mprotect", Names::kNothing},
    {SYS_madvise, "madvise", Names::kNothing},
    {SYS_brk, "brk", Names::kNothing},
    {SYS_getrandom, "getrandom", Names::kNothing},
    {SYS_rt_sigaction, "rt_sigaction", Names::kNothing},
    {SYS_geteuid, "geteuid", Names::kNothing},
    {SYS_futex, "futex", Names::kNothing},
    {SYS_exit_group, "exit_group", Names::kNothing},
    {kShellCommand, "system", Names::kNothing},
    {kUnknown, "unknown", Names::kNothing},  // must stay the last one
};

using Arguments = std::array<long, 6>;

// Returns the kernel's result, -errno after a failure.
long plain_call(long number, const Arguments& arguments) {
  long result = number;
  register long fourth asm("r10") = arguments[3];
  register long fifth asm("r8") = arguments[4];
  register long sixth asm("r9") = arguments[5];
  asm volatile("syscall"
               : "+a"(result)
               : "D"(arguments[0]), "S"(arguments[1]), "d"(arguments[2]), "r"(fourth),
                 "r"(fifth), "r"(sixth)
               : "rcx", "r11", "memory");
  return result;
}

long address_of(const void* place) { return reinterpret_cast<long>(place); }

const Kind& kind_of(long number) {
  const Kind* kind = kKinds;
  while (kind->number != number && kind->number != kUnknown) ++kind;
  return *kind;
}

// Copies as much as fits.
template <std::size_t kRoom>
void copy_text(const char* text, char (&copy)[kRoom]) {
  std::size_t size = 0;
  while (size + 1 < kRoom && text[size] != '\0') {
    copy[size] = text[size];
    ++size;
  }
  copy[size] = '\0';
}

// A short text, built without the C library.
class Text {
 public:
  void add(const char* text) {
    while (*text != '\0' && size_ < sizeof text_ - 1) text_[size_++] = *text++;
    text_[size_] = '\0';
  }

  void add(long number) {
    char digits[24];
    char* digit = digits + sizeof digits - 1;
    *digit = '\0';
    auto rest = static_cast<unsigned long>(number < 0 ? -number : number);
    do {
      *--digit = static_cast<char>('0' + rest % 10);
      rest /= 10;
    } while (rest > 0);
    if (number < 0) *--digit = '-';
    add(digit);
  }

  void write_to(int descriptor) const {
    plain_call(SYS_write, {descriptor, address_of(text_), static_cast<long>(size_)});
  }

  [[nodiscard]] const char* text() const { return text_; }

 private:
  char text_[PATH_MAX + 200] = "";
  std::size_t size_ = 0;
};

// Returns the path of the file behind an open descriptor.
void find_path(long descriptor, char (&path)[PATH_MAX]) {
  Text link;
  link.add("/proc/self/fd/");
  link.add(descriptor);
  const long size = plain_call(
      SYS_readlink, {address_of(link.text()), address_of(path), sizeof path - 1});
  path[size > 0 ? size : 0] = '\0';
}

// A call of the program.
class Call {
 public:
  Call(long number, const Arguments& arguments)
      : number_(number), arguments_(arguments), kind_(kind_of(number)) {
    const auto* text = reinterpret_cast<const char*>(
        arguments[kind_.by == Names::kPathInFolder ? 1 : 0]);
    const bool by_path = kind_.by == Names::kPath || kind_.by == Names::kPathInFolder;
    by_descriptor_ = kind_.by == Names::kDescriptor || (by_path && *text == '\0');
    if (by_descriptor_) {
      find_path(arguments[0], path_);
    } else if (by_path) {
      copy_text(text, path_);
    }
  }

  [[nodiscard]] long number() const { return number_; }
  [[nodiscard]] const Arguments& arguments() const { return arguments_; }
  [[nodiscard]] const char* name() const {
    return number_ == SYS_newfstatat && by_descriptor_ ? "fstat" : kind_.name;
  }
  [[nodiscard]] const char* path() const { return path_; }

  // The file's name without its folder.
  [[nodiscard]] const char* file() const {
    constexpr const char* kStreams[] = {"standard-input", "standard-output",
                                        "standard-error"};
    if (path_[0] == '\0') return "-";
    if (by_descriptor_ && 0 <= arguments_[0] && arguments_[0] <= 2) {
      return kStreams[arguments_[0]];
    }
    // Which one it is depends on what else runs.
    if (std::strncmp(path_, "/dev/pts/", 9) == 0) return "terminal";
    const char* last = std::strrchr(path_, '/');
    return last != nullptr && last[1] != '\0' ? last + 1 : path_;
  }

  long carry_out() const { return plain_call(number_, arguments_); }

  // Executes a read or write of at most `size` bytes.
  [[nodiscard]] long carry_out_in_part(long size) const {
    Arguments part = arguments_;
    if (number_ != SYS_writev && number_ != SYS_readv) {
      part[2] = size < part[2] ? size : part[2];
      return plain_call(number_, part);
    }
    const auto* piece = reinterpret_cast<const iovec*>(part[1]);
    while (piece->iov_len == 0) ++piece;
    const long length = static_cast<long>(piece->iov_len);
    return plain_call(
        number_ == SYS_writev ? SYS_write : SYS_read,
        {part[0], address_of(piece->iov_base), size < length ? size : length});
  }

 private:
  long number_;
  Arguments arguments_;
  const Kind& kind_;
  bool by_descriptor_ = false;
  char path_[PATH_MAX] = "";
};

// Counts calls by name and file.
class CallCounts {
 public:
  long count(const Call& call) {
    std::size_t i = 0;
    while (i < used_ && !counts_[i].is_of(call)) ++i;
    if (i == kRoom) return 0;
    if (i == used_) {
      ++used_;
      counts_[i].name = call.name();
      copy_text(call.file(), counts_[i].file);
    }
    return ++counts_[i].calls;
  }

 private:
  struct Count {
    [[nodiscard]] bool is_of(const Call& call) const {
      return name == call.name() &&
             std::strncmp(file, call.file(), sizeof file - 1) == 0;
    }

    const char* name = nullptr;
    char file[80] = "";
    long calls = 0;
  };

  static constexpr std::size_t kRoom = 800;
  Count counts_[kRoom];
  std::size_t used_ = 0;
};

// Which call is altered, and how.
class Fault {
 public:
  // Returns false if the text does not have the form described above.
  bool read(const char* text) {
    copy_text(text, text_);
    char* rest = text_;
    const char* at = nullptr;
    name_ = strsep(&rest, "\t");
    file_ = strsep(&rest, "\t");
    at = strsep(&rest, "\t");
    char* value = strsep(&rest, "\t");
    if (value == nullptr) return false;
    at_ = std::strtol(at, nullptr, 10);
    on_ = rest != nullptr && std::strcmp(rest, "on") == 0;
    what_ = strsep(&value, "=");
    value_ = value == nullptr ? 0 : std::strtol(value, nullptr, 10);
    return true;
  }

  // `count` is the number of the call among those of its name and file.
  [[nodiscard]] bool is_meant(const Call& call, long count) const {
    return (count == at_ || (on_ && count > at_)) &&
           std::strcmp(call.name(), name_) == 0 && std::strcmp(call.file(), file_) == 0;
  }

  [[nodiscard]] bool is(const char* what) const {
    return std::strcmp(what_, what) == 0;
  }
  [[nodiscard]] long value() const { return value_; }

  // Executes the altered call. Returns the kernel's result.
  [[nodiscard]] long meddle(const Call& call) const {
    if (is("error")) {
      // The system closes the descriptor even when it reports an error.
      if (call.number() == SYS_close) call.carry_out();
      // brk reports a failure by returning the old end of the data segment.
      if (call.number() == SYS_brk) return plain_call(SYS_brk, {});
      return -value_;
    }
    if (is("end")) return 0;
    if (is("count")) return call.carry_out_in_part(value_);
    if (is("half")) {
      const long all = call.arguments()[2];
      return call.carry_out_in_part(all > 1 ? all / 2 : 1);
    }
    if (is("shrink")) plain_call(SYS_truncate, {address_of(call.path()), value_});
    if (is("signal")) plain_call(SYS_kill, {plain_call(SYS_getpid, {}), value_});
    return call.carry_out();
  }

 private:
  char text_[256] = "";
  const char* name_ = "";
  const char* file_ = "";
  const char* what_ = "";
  long at_ = 0;
  long value_ = 0;
  bool on_ = false;
};

constinit CallCounts call_counts;
constinit Fault fault;
int log_descriptor = -1;
volatile char selector = SYSCALL_DISPATCH_FILTER_ALLOW;

void log_call(const Call& call, long count, long result, bool meant) {
  if (log_descriptor < 0) return;
  Text line;
  line.add(call.name());
  for (const char* text : {"\t", call.file(), "\t"}) line.add(text);
  line.add(count);
  line.add("\t");
  line.add(call.arguments()[2]);
  line.add("\t");
  line.add(kind_of(call.number()).number == kUnknown ? call.number() : result);
  line.add(meant ? "\tfault\n" : "\n");
  line.write_to(log_descriptor);
}

// Executes a call, altered if it is the one of the fault.
long take(const Call& call) {
  const long count = call_counts.count(call);
  const bool meant = fault.is_meant(call, count);
  if (call.number() == SYS_exit_group || (meant && fault.is("signal"))) {
    log_call(call, count, 0, meant);  // there may be no time afterwards
    return meant ? fault.meddle(call) : call.carry_out();
  }
  const long result = meant ? fault.meddle(call) : call.carry_out();
  log_call(call, count, result, meant);
  return result;
}

void take_over(int /*signal*/, siginfo_t* /*about*/, void* context) {
  selector = SYSCALL_DISPATCH_FILTER_ALLOW;
  greg_t(&registers)[NGREG] = static_cast<ucontext_t*>(context)->uc_mcontext.gregs;
  const long number = registers[REG_RAX];
  if (number == SYS_clone || number == SYS_clone3) {
    // Only the leak check at the exit of a sanitized program starts a thread, on a
    // stack from which this handler could not return. That call and all later ones
    // pass.
    constexpr greg_t kSizeOfSyscallInstruction = 2;
    registers[REG_RIP] -= kSizeOfSyscallInstruction;
    return;
  }
  registers[REG_RAX] =
      take(Call(number, {registers[REG_RDI], registers[REG_RSI], registers[REG_RDX],
                         registers[REG_R10], registers[REG_R8], registers[REG_R9]}));
  selector = SYSCALL_DISPATCH_FILTER_BLOCK;
}

[[noreturn]] void give_up(const char* why) {
  Text line;
  for (const char* text : {"failing_calls: ", why, "\n"}) line.add(text);
  line.write_to(STDERR_FILENO);
  _exit(125);
}

// A high descriptor for the log, out of the way of the program's own.
void open_log(const char* name) {
  constexpr int kFarAway = 500;
  const int descriptor = open(name, O_WRONLY | O_CREAT | O_TRUNC | O_APPEND, 0666);
  log_descriptor = fcntl(descriptor, F_DUPFD_CLOEXEC, kFarAway);
  if (log_descriptor < 0) give_up("the log cannot be written");
  close(descriptor);
}

// The kernel's struct of a signal's action.
struct KernelAction {
  void (*handler)(int, siginfo_t*, void*);
  unsigned long flags;
  void (*restorer)();
  unsigned long mask;
};

// The return from a signal handler is itself a system call, which must not be
// dispatched: its address range is excluded.
void watch_calls() {
  constexpr long kSizeOfReturn = 16;
  struct sigaction action {};
  action.sa_sigaction = take_over;
  action.sa_flags = SA_SIGINFO | SA_NODEFER;
  sigaction(SIGSYS, &action, nullptr);
  KernelAction now{};
  plain_call(SYS_rt_sigaction, {SIGSYS, 0, address_of(&now), sizeof now.mask});
  if (prctl(PR_SET_SYSCALL_USER_DISPATCH, PR_SYS_DISPATCH_ON,
            reinterpret_cast<long>(now.restorer), kSizeOfReturn, &selector) != 0) {
    give_up("the kernel does not hand over system calls (Linux 5.11 or newer does)");
  }
}

// Runs before `main`. Children of the program start without all this.
__attribute__((constructor)) void start() {
  const char* fault_text = std::getenv("VELDMARK_FAULT");
  if (fault_text != nullptr && !fault.read(fault_text)) {
    give_up("VELDMARK_FAULT is not name, file, number and what, separated by tabs");
  }
  const char* log_name = std::getenv("VELDMARK_CALL_LOG");
  if (log_name != nullptr) open_log(log_name);
  for (const char* name : {"LD_PRELOAD", "VELDMARK_FAULT", "VELDMARK_CALL_LOG"}) {
    unsetenv(name);
  }
  watch_calls();
  selector = SYSCALL_DISPATCH_FILTER_BLOCK;
}

}  // namespace

// The C library starts the shell with all signals blocked, including SIGSYS, so no call
// can be dispatched meanwhile.
extern "C" int system(const char* command) {
  using System = int (*)(const char*);
  selector = SYSCALL_DISPATCH_FILTER_ALLOW;
  const Call call(kShellCommand, {});
  const long count = call_counts.count(call);
  const bool meant = fault.is_meant(call, count);
  int result = -1;
  if (meant) {
    errno = static_cast<int>(fault.value());
  } else {
    result = reinterpret_cast<System>(dlsym(RTLD_NEXT, "system"))(command);
  }
  log_call(call, count, result, meant);
  selector = SYSCALL_DISPATCH_FILTER_BLOCK;
  return result;
}

// Needed because the C library reads the clocks without a system call.
extern "C" int clock_gettime(clockid_t clock, timespec* time) noexcept {
  using GetTime = int (*)(clockid_t, timespec*);
  if (clock == CLOCK_REALTIME) {
    *time = {.tv_sec = 1'500'000'000, .tv_nsec = 0};
    return 0;
  }
  static const auto get_time =
      reinterpret_cast<GetTime>(dlsym(RTLD_NEXT, "clock_gettime"));
  return get_time(clock, time);
}
