// Writes the headers of classic netCDF files, byte by byte.

#ifndef VELDMARK_TESTS_SUPPORT_CLASSIC_NETCDF_H_
#define VELDMARK_TESTS_SUPPORT_CLASSIC_NETCDF_H_

#include <cstdint>
#include <string>

namespace veldmark::testing {

// A header in the making. Numbers are written with the most significant byte first.
class ClassicHeader {
 public:
  static constexpr std::uint64_t kText = 2;
  static constexpr std::uint64_t kShort = 3;
  static constexpr std::uint64_t kFloat = 5;

  // The lists that a header holds.
  static constexpr std::uint64_t kDimensions = 10;
  static constexpr std::uint64_t kVariables = 11;
  static constexpr std::uint64_t kAttributes = 12;

  // Version 1, 2 or 5: counts have eight bytes in the last, and offsets four in the
  // first.
  explicit ClassicHeader(int version)
      : version_(version), bytes_("CDF" + std::string(1, static_cast<char>(version))) {}

  ClassicHeader& word(std::uint64_t value) { return number(value, 4); }
  ClassicHeader& count(std::uint64_t value) {
    return number(value, version_ == 5 ? 8 : 4);
  }
  ClassicHeader& offset(std::uint64_t value) {
    return number(value, version_ == 1 ? 4 : 8);
  }

  // A name, or any text with its length.
  ClassicHeader& name(const std::string& text) {
    count(text.size());
    bytes_ += text + std::string((4 - text.size() % 4) % 4, '\0');
    return *this;
  }

  ClassicHeader& list(std::uint64_t tag, std::uint64_t length) {
    return word(tag).count(length);
  }
  ClassicHeader& no_list() { return list(0, 0); }

  ClassicHeader& text_attribute(const std::string& called, const std::string& text) {
    return name(called).word(kText).name(text);
  }

  [[nodiscard]] const std::string& bytes() const { return bytes_; }

 private:
  ClassicHeader& number(std::uint64_t value, int width) {
    constexpr int kByte = 8;
    for (int i = width - 1; i >= 0; --i) {
      bytes_ += static_cast<char>(value >> (kByte * i) & 0xff);
    }
    return *this;
  }

  int version_;
  std::string bytes_;
};

}  // namespace veldmark::testing

#endif  // VELDMARK_TESTS_SUPPORT_CLASSIC_NETCDF_H_
