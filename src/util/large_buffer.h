// A large block of memory for plain values, without the cost of clearing it.

#ifndef VELDMARK_UTIL_LARGE_BUFFER_H_
#define VELDMARK_UTIL_LARGE_BUFFER_H_

#include <cstddef>
#include <cstdint>
#include <memory>

namespace veldmark {

// Room for `size` values that hold anything until they are written. Throws
// std::bad_alloc when there is no such room. Move-only.
class LargeBuffer {
 public:
  LargeBuffer() = default;
  explicit LargeBuffer(std::size_t size);

  [[nodiscard]] std::int16_t* data() { return values_.get(); }
  [[nodiscard]] const std::int16_t* data() const { return values_.get(); }

 private:
  struct Free {
    void operator()(std::int16_t* values) const;
  };

  std::unique_ptr<std::int16_t[], Free> values_;  // NOLINT(modernize-avoid-c-arrays)
};

}  // namespace veldmark

#endif  // VELDMARK_UTIL_LARGE_BUFFER_H_
