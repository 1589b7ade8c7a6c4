// How far a long piece of work has come, on one line of a terminal that is rewritten in
// place and gone at the end.

#ifndef VELDMARK_COMPANION_PROGRESS_LINE_H_
#define VELDMARK_COMPANION_PROGRESS_LINE_H_

#include <cstdint>
#include <functional>
#include <ostream>
#include <string>

namespace veldmark::companion {

// Seconds from any moment on; never runs backwards.
using Clock = std::function<double()>;

// Returns a clock of the system that no change of the time of day disturbs.
Clock system_clock_of_progress();

// "37 % done, 812 MB/s, 2 s left". MB are millions of bytes. Speed and time left are
// those of the whole work so far, and are left out before there is any.
//   done, all    bytes; done <= all unless the file grows meanwhile
std::string progress_text(std::int64_t done, std::int64_t all, double seconds);

class ProgressLine {
 public:
  // Where progress is shown; nothing is written unless `shown`.
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

  // `count` further bytes are done. Shown at most five times a second.
  void add(std::int64_t count);

 private:
  const Screen& screen_;
  std::string title_;
  std::int64_t all_;
  std::int64_t done_ = 0;
  double started_ = 0;
  double next_ = 0;
  bool visible_ = false;
};

}  // namespace veldmark::companion

#endif  // VELDMARK_COMPANION_PROGRESS_LINE_H_
