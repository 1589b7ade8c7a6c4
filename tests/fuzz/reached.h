// Counts what the inputs of a run have reached. The replay of the corpus requires
// minimum counts, so that inputs which a change has made meaningless are noticed.

#ifndef VELDMARK_TESTS_FUZZ_REACHED_H_
#define VELDMARK_TESTS_FUZZ_REACHED_H_

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace veldmark::fuzz {

using ReachedCounts = std::map<std::string, std::size_t, std::less<>>;

// Returns the counts of this process.
inline ReachedCounts& reached_counts() {
  static ReachedCounts counts;
  return counts;
}

// Adds `times` to the count of `what`.
inline void reached(std::string_view what, std::size_t times = 1) {
  const auto found = reached_counts().find(what);
  if (found == reached_counts().end()) {
    reached_counts().emplace(what, times);
  } else {
    found->second += times;
  }
}

}  // namespace veldmark::fuzz

#endif  // VELDMARK_TESTS_FUZZ_REACHED_H_
