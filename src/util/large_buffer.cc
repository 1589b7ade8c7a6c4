#include "util/large_buffer.h"

#include <sys/mman.h>
#include <unistd.h>

namespace veldmark {

LargeBuffer make_large_buffer(std::size_t size) {
  LargeBuffer buffer(size);
#ifdef MADV_HUGEPAGE
  // Huge pages mean fewer page faults while the block is filled. madvise begins at a
  // page; a system without huge pages ignores it.
  void* begin = buffer.data();
  std::size_t bytes = buffer.size() * sizeof(std::int16_t);
  const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  if (std::align(page, page, begin, bytes) != nullptr) {
    ::madvise(begin, bytes, MADV_HUGEPAGE);
  }
#endif
  return buffer;
}

}  // namespace veldmark
