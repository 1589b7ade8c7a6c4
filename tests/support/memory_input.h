// A descriptor from which a text can be read, in place of standard input.

#ifndef VELDMARK_TESTS_SUPPORT_MEMORY_INPUT_H_
#define VELDMARK_TESTS_SUPPORT_MEMORY_INPUT_H_

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <string_view>

namespace veldmark::testing {

class MemoryInput {
 public:
  explicit MemoryInput(std::string_view text)
      : descriptor_(::memfd_create("input", MFD_CLOEXEC)) {
    EXPECT_EQ(::write(descriptor_, text.data(), text.size()),
              static_cast<ssize_t>(text.size()));
    ::lseek(descriptor_, 0, SEEK_SET);
  }
  ~MemoryInput() { ::close(descriptor_); }
  MemoryInput(const MemoryInput&) = delete;
  MemoryInput& operator=(const MemoryInput&) = delete;
  MemoryInput(MemoryInput&&) = delete;
  MemoryInput& operator=(MemoryInput&&) = delete;

  [[nodiscard]] int descriptor() const { return descriptor_; }

 private:
  int descriptor_;
};

}  // namespace veldmark::testing

#endif  // VELDMARK_TESTS_SUPPORT_MEMORY_INPUT_H_
