#include "util/large_buffer.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace veldmark {
namespace {

// Returns how many bytes of begin..end are in memory that is advised for huge pages,
// according to the kernel's list: a line "begin-end ..." for each mapping, and further
// down "VmFlags: ..." with hg among the flags.
std::uintptr_t advised_bytes(std::uintptr_t begin, std::uintptr_t end) {
  std::ifstream list("/proc/self/smaps");
  std::uintptr_t found = 0;
  std::uintptr_t piece_begin = 0;
  std::uintptr_t piece_end = 0;
  for (std::string line; std::getline(list, line);) {
    std::istringstream words(line);
    char hyphen{};
    std::uintptr_t first = 0;
    std::uintptr_t last = 0;
    if (words >> std::hex >> first >> hyphen >> last && hyphen == '-') {
      piece_begin = std::max(first, begin);
      piece_end = std::min(last, end);
    } else if (line.starts_with("VmFlags:") && line.find(" hg") != std::string::npos) {
      found += piece_begin < piece_end ? piece_end - piece_begin : 0;
    }
  }
  return found;
}

// The pages at its ends may have been advised for an earlier buffer.
TEST(LargeBuffer, AdvisesHugePagesForItsWholePages) {
  if (!std::filesystem::exists("/sys/kernel/mm/transparent_hugepage")) {
    GTEST_SKIP() << "this system has no huge pages to ask for";
  }
  const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
  for (const std::size_t size : {300'000U, 4'000'001U}) {
    LargeBuffer buffer = make_large_buffer(size);
    ASSERT_EQ(buffer.size(), size);
    const auto begin = reinterpret_cast<std::uintptr_t>(buffer.data());
    const std::uintptr_t end = begin + size * sizeof(std::int16_t);
    const std::uintptr_t first_page = (begin + page - 1) / page * page;
    const std::uintptr_t last_page = end / page * page;
    EXPECT_EQ(advised_bytes(first_page, last_page), last_page - first_page) << size;
  }
}

}  // namespace
}  // namespace veldmark
