#include "util/large_buffer.h"

#include <sys/mman.h>

#include <cstdlib>
#include <new>

namespace veldmark {
namespace {

constexpr std::size_t kHugePage = std::size_t{2} * 1024 * 1024;

std::size_t rounded_up(std::size_t size, std::size_t unit) {
  return (size + unit - 1) / unit * unit;
}

}  // namespace

LargeBuffer::LargeBuffer(std::size_t size) {
  const std::size_t bytes = size * sizeof(std::int16_t);
  if (bytes < kHugePage) {
    values_.reset(static_cast<std::int16_t*>(std::malloc(bytes + 1)));  // never 0 bytes
  } else {
    const std::size_t pages = rounded_up(bytes, kHugePage);
    values_.reset(static_cast<std::int16_t*>(std::aligned_alloc(kHugePage, pages)));
    // Fewer page faults while the block is filled; where the system has no huge pages
    // the advice is ignored.
    ::madvise(values_.get(), pages, MADV_HUGEPAGE);
  }
  if (!values_) {
    throw std::bad_alloc();
  }
}

void LargeBuffer::Free::operator()(std::int16_t* values) const { std::free(values); }

}  // namespace veldmark
