#include "extract/parallel_parts.h"

#include <algorithm>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace veldmark::extract {
namespace {

// A smaller part would not pay for starting its thread. More than four threads don't
// help: memory bandwidth is the limit.
constexpr std::size_t kMinBytesPerPart = std::size_t{8} << 20U;
constexpr std::size_t kMaxParts = 4;

}  // namespace

void run_parts(std::size_t count, const std::function<void(const Part&)>& work) {
  std::atomic<std::size_t> failed = count;
  std::mutex mutex;
  std::vector<std::exception_ptr> failures(count);
  const auto run = [&](std::size_t index) {
    try {
      work(Part(index, count, failed));
    } catch (...) {
      failures[index] = std::current_exception();
      const std::scoped_lock lock(mutex);
      failed = std::min<std::size_t>(failed, index);
    }
  };
  {
    std::vector<std::jthread> threads;
    for (std::size_t index = 1; index < count; ++index) {
      try {
        threads.emplace_back(run, index);
      } catch (const std::system_error&) {
        run(index);
      }
    }
    run(0);
  }
  if (failed < count) {
    std::rethrow_exception(failures[failed]);
  }
}

std::size_t parts_for(std::size_t bytes) {
  const std::size_t processors = std::thread::hardware_concurrency();  // 0 if unknown
  return std::max<std::size_t>(
      1, std::min({bytes / kMinBytesPerPart, processors, kMaxParts}));
}

}  // namespace veldmark::extract
