// A progress line on a terminal, rewritten in place and erased at the end.

#ifndef VELDMARK_COMPANION_PROGRESS_LINE_H_
#define VELDMARK_COMPANION_PROGRESS_LINE_H_

#include <cstdint>
#include <functional>
#include <ostream>
#include <string>

namespace veldmark::companion {

// Returns seconds since an arbitrary moment; never decreases.
using Clock = std::function<double()>;

// Returns the system's monotonic clock.
Clock system_clock_of_progress();

// Returns "37 % done, 812 MB/s, 2 s left"; a MB is a million bytes. Speed and time left
// are averages since the start, and are omitted until any bytes are done.
//
//   done, all    bytes; done <= all unless the file grows meanwhile
std::string progress_text(std::int64_t done, std::int64_t all, double seconds);

class ProgressLine {
 public:
  // The terminal; nothing is written unless `shown`.
  struct Screen {
    std::ostream& stream;
    bool shown = false;
    Clock clock = system_clock_of_progress();
  };

  ProgressLine(const Screen& screen, std::string title, std::int64_t all);
  ~ProgressLine();
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;
  ProgressLine(ProgressLine&&) = delete;
  ProgressLine& operator=(ProgressLine&&) = delete;

  // Adds `count` bytes to those done. Redraws at most five times a second.
  void add(std::int64_t count);

 private:
  const Screen& screen_;
  std::string title_;
  std::int64_t all_;
  std::int64_t done_ = 0;
  double started_;
  double next_;
  bool visible_ = false;
};

}  // namespace veldmark::companion

#endif  // VELDMARK_COMPANION_PROGRESS_LINE_H_
