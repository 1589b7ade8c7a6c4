// Work that is done in parts, each on a thread of its own.

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

  // Of `all` things the part's are those from begin(all) to before end(all).
  [[nodiscard]] std::size_t begin(std::size_t all) const {
    return all * index_ / count_;
  }
  [[nodiscard]] std::size_t end(std::size_t all) const {
    return all * (index_ + 1) / count_;
  }

  [[nodiscard]] std::size_t index() const { return index_; }

  // Has a part before this one failed, so that nobody waits for this one's result?
  [[nodiscard]] bool is_in_vain() const { return failed_ < index_; }

 private:
  std::size_t index_;
  std::size_t count_;
  const std::atomic<std::size_t>& failed_;  // the first part that has failed
};

// Calls `work` with each of `count` parts and waits for all of them. Where the system
// gives no further thread, the calling one does the part.
// Throws what the first part, by its index, that failed has thrown.
void run_parts(std::size_t count, const std::function<void(const Part&)>& work);

// Returns how many parts are worth their threads, one for each processor at most, when
// `bytes` are read in all.
std::size_t parts_for(std::size_t bytes);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_PARALLEL_PARTS_H_
