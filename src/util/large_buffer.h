// A large block of memory for plain values, without the cost of clearing it.

#ifndef VELDMARK_UTIL_LARGE_BUFFER_H_
#define VELDMARK_UTIL_LARGE_BUFFER_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace veldmark {

// Leaves new elements unset, where std::allocator would clear them.
template <typename Value>
struct UnsetAllocator : std::allocator<Value> {
  template <typename Other>
  struct rebind {  // NOLINT(readability-identifier-naming): the library's name
    using other = UnsetAllocator<Other>;
  };

  template <typename Element>
  void construct(Element* /*element*/) noexcept {}
};

// Values that hold anything until they are written.
using LargeBuffer = std::vector<std::int16_t, UnsetAllocator<std::int16_t>>;

// Returns memory for `size` values. Throws std::bad_alloc when there is none.
LargeBuffer make_large_buffer(std::size_t size);

}  // namespace veldmark

#endif  // VELDMARK_UTIL_LARGE_BUFFER_H_
