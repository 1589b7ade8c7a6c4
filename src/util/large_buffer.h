// A large block of values that is allocated without the cost of clearing it.

#ifndef VELDMARK_UTIL_LARGE_BUFFER_H_
#define VELDMARK_UTIL_LARGE_BUFFER_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace veldmark {

// Leaves new elements uninitialised, where std::allocator would clear them.
template <typename Value>
struct UninitialisedAllocator : std::allocator<Value> {
  template <typename Other>
  struct rebind {  // NOLINT(readability-identifier-naming): the library's name
    using other = UninitialisedAllocator<Other>;
  };

  template <typename Element>
  void construct(Element* /*element*/) noexcept {}
};

// 16-bit values, indeterminate until they are written.
using LargeBuffer = std::vector<std::int16_t, UninitialisedAllocator<std::int16_t>>;

// Returns memory for `size` values. Throws std::bad_alloc if there is not enough.
LargeBuffer make_large_buffer(std::size_t size);

}  // namespace veldmark

#endif  // VELDMARK_UTIL_LARGE_BUFFER_H_
