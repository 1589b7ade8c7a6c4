#include "companion/progress_line.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string_view>
#include <utility>

namespace veldmark::companion {
namespace {

constexpr double kUpdateInterval = 0.2;
constexpr std::string_view kClearLine = "\r\x1b[K";

}  // namespace

Clock system_clock_of_progress() {
  return [] {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(now).count();
  };
}

std::string progress_text(std::int64_t done, std::int64_t all, double seconds) {
  const std::int64_t share =
      all > 0 ? std::min<std::int64_t>(done * 100 / all, 100) : 0;
  std::string text = std::to_string(share) + " % done";
  if (done <= 0 || seconds <= 0) {
    return text;
  }
  const double speed = static_cast<double>(done) / seconds;
  const double left =
      static_cast<double>(std::max<std::int64_t>(all - done, 0)) / speed;
  text += ", " + std::to_string(std::llround(speed / 1e6)) + " MB/s";
  text += ", " + std::to_string(std::llround(std::ceil(left))) + " s left";
  return text;
}

ProgressLine::ProgressLine(const Screen& screen, std::string title, std::int64_t all)
    : screen_(screen),
      title_(std::move(title)),
      all_(all),
      started_(screen.clock()),
      next_(started_ + kUpdateInterval) {}

ProgressLine::~ProgressLine() {
  if (visible_) {
    screen_.stream << kClearLine << std::flush;
  }
}

void ProgressLine::add(std::int64_t count) {
  done_ += count;
  if (!screen_.shown) {
    return;
  }
  const double now = screen_.clock();
  if (now < next_) {
    return;
  }
  next_ = now + kUpdateInterval;
  visible_ = true;
  screen_.stream << kClearLine << title_ << ": "
                 << progress_text(done_, all_, now - started_) << std::flush;
}

}  // namespace veldmark::companion
