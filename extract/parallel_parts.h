// Divides work into parts that run on threads of their own.

#ifndef VELDMARK_EXTRACT_PARALLEL_PARTS_H_
#define VELDMARK_EXTRACT_PARALLEL_PARTS_H_

#include <atomic>
#include <cstddef>
#include <functional>

namespace veldmark::extract {

// One of the parts, counted from 0.
class Part {
 public:
  Part(std::size_t index, std::size_t count, const std::atomic<std::size_t>& failed)
      : index_(index), count_(count), failed_(failed) {}

  // The part's share of `all` items is [begin(all), end(all)).
  [[nodiscard]] std::size_t begin(std::size_t all) const {
    return all * index_ / count_;
  }
  [[nodiscard]] std::size_t end(std::size_t all) const {
    return all * (index_ + 1) / count_;
  }

  [[nodiscard]] std::size_t index() const { return index_; }

  // Returns whether a part with a lower index has failed, so that this part's result is
  // not needed.
  [[nodiscard]] bool is_cancelled() const { return failed_ < index_; }

 private:
  std::size_t index_;
  std::size_t count_;
  const std::atomic<std::size_t>& failed_;  // lowest index of a failed part
};

// Calls `work` with each of `count` parts and waits for all of them. If the system
// refuses a thread, the part runs on the calling one.
// Throws the exception of the failed part with the lowest index.
void run_parts(std::size_t count, const std::function<void(const Part&)>& work);

// Returns the number of parts to read `bytes` in: at least 1, at most 4 and at most one
// per processor.
std::size_t parts_for(std::size_t bytes);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_PARALLEL_PARTS_H_
