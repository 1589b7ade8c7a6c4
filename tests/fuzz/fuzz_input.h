// Splits the bytes of a fuzzer: small numbers from the front, then text.

#ifndef VELDMARK_TESTS_FUZZ_FUZZ_INPUT_H_
#define VELDMARK_TESTS_FUZZ_FUZZ_INPUT_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace veldmark::fuzz {

// After the end of the bytes, numbers are the lowest and texts are empty, so that every
// input is valid.
class FuzzInput {
 public:
  FuzzInput(const std::uint8_t* data, std::size_t size)
      : rest_(reinterpret_cast<const char*>(data), size) {}

  [[nodiscard]] bool empty() const { return rest_.empty(); }

  std::uint8_t byte() {
    if (rest_.empty()) return 0;
    const auto value = static_cast<std::uint8_t>(rest_.front());
    rest_.remove_prefix(1);
    return value;
  }

  bool flag() { return byte() % 2 != 0; }

  // A number from lowest to highest, both included; takes two bytes.
  int between(int lowest, int highest) {
    const int low_byte = byte();
    const int number = low_byte + 256 * byte();
    return lowest + number % (highest - lowest + 1);
  }

  // The next `size` bytes, or all that are left.
  std::string text(std::size_t size) {
    const std::string taken(rest_.substr(0, size));
    rest_.remove_prefix(taken.size());
    return taken;
  }

  std::string rest() { return text(rest_.size()); }

 private:
  std::string_view rest_;
};

}  // namespace veldmark::fuzz

#endif  // VELDMARK_TESTS_FUZZ_FUZZ_INPUT_H_
