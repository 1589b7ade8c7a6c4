#include "extract/parallel_parts.h"

#include <algorithm>
#include <exception>
#include <system_error>
#include <thread>
#include <vector>

namespace veldmark::extract {
namespace {

// A smaller part would not pay for starting its thread. More than four threads don't
// help: memory bandwidth is the limit.
constexpr std::size_t kMinBytesPerPart = std::size_t{8} << 20U;
constexpr std::size_t kMaxParts = 4;

void store_minimum(std::atomic<std::size_t>& number, std::size_t value) {
  std::size_t before = number;
  while (value < before && !number.compare_exchange_weak(before, value)) {
  }
}

}  // namespace

void run_parts(std::size_t count, const std::function<void(const Part&)>& work) {
  std::atomic<std::size_t> failed = count;
  std::vector<std::exception_ptr> failures(count);
  const auto run = [&](std::size_t index) {
    try {
      work(Part(index, count, failed));
    } catch (...) {
      failures[index] = std::current_exception();
      store_minimum(failed, index);
    }
  };
  {
    std::vector<std::jthread> threads;
    threads.reserve(count);
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
  const std::size_t processors = std::max(1U, std::thread::hardware_concurrency());
  return std::clamp(bytes / kMinBytesPerPart, std::size_t{1},
                    std::min(processors, kMaxParts));
}

}  // namespace veldmark::extract
