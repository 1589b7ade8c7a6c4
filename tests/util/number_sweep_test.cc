// Compares numbers in fixed fields with plain definitions.

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

#include "output/value_text.h"
#include "support/plain/texts.h"
#include "support/sweep.h"
#include "util/fixed_field.h"

namespace veldmark {
namespace {

using testing::record_cases;

// Returns the digits, computed one by one from the right.
std::string digits_of(std::int64_t value) {
  std::string text;
  for (std::int64_t rest = value < 0 ? -value : value; rest > 0; rest /= 10) {
    text.insert(text.begin(), "0123456789"[rest % 10]);
  }
  if (text.empty()) {
    text = "0";
  }
  return (value < 0 ? "-" : "") + text;
}

TEST(NumberSweep, FixedInteger) {
  std::size_t cases = 0;
  for (std::int64_t value = -110000; value <= 110000; ++value) {
    const std::string digits = digits_of(value);
    for (const int width : {4, 5, 6, 8, 10}) {
      ASSERT_EQ(fixed_integer(value, width),
                plain::in_columns(digits, static_cast<std::size_t>(width)));
      ++cases;
    }
  }
  record_cases(cases, 1'100'005);
}

TEST(NumberSweep, ValueText) {
  const ValueText value_text;
  std::size_t cases = 0;
  for (std::int32_t value = -32768; value <= 32767; ++value, ++cases) {
    std::array<char, ValueText::kCopySize> out{};
    const char* end = value_text.write(static_cast<std::int16_t>(value), out.data());
    ASSERT_EQ(end, out.data() + 6);
    ASSERT_EQ(std::string(out.data(), 6), plain::in_columns(digits_of(value), 6));
  }
  record_cases(cases, 65'536);
}

// Returns all decimals of a 32-bit real; it has at most 149.
std::string all_decimals(float value) {
  std::array<char, 256> text{};
  const int length =
      std::snprintf(text.data(), text.size(), "%.150f", std::fabs(double{value}));
  return {text.data(), static_cast<std::size_t>(length)};
}

// Truncates to `decimals` decimals and then rounds half to even by what was cut off.
std::string plainly_rounded(float value, std::size_t decimals) {
  const std::string exact = all_decimals(value);
  std::string kept = exact.substr(0, exact.find('.') + 1 + decimals);
  const std::string cut_off = exact.substr(kept.size());
  const std::string half = "5" + std::string(cut_off.size() - 1, '0');
  const bool odd = (kept.back() - '0') % 2 != 0;
  if (cut_off > half || (cut_off == half && odd)) {
    std::size_t place = kept.size();
    for (bool carry = true; carry && place > 0; --place) {
      char& digit = kept[place - 1];
      if (digit != '.') {
        carry = digit == '9';
        digit = carry ? '0' : static_cast<char>(digit + 1);
      }
    }
    if (kept.front() == '0' && exact.front() != '0') {
      kept.insert(0, "1");  // 9.99 became 0.00
    }
  }
  return (std::signbit(value) ? "-" : "") + kept;
}

struct Layout {
  int width;
  int decimals;
};

// The widths and decimals that screens and files use.
constexpr std::array<Layout, 6> kLayouts{
    {{6, 2}, {7, 2}, {8, 2}, {7, 3}, {9, 3}, {10, 3}}};

void expect_plain(float value) {
  for (const Layout& layout : kLayouts) {
    const auto decimals = static_cast<std::size_t>(layout.decimals);
    ASSERT_EQ(fixed_real(value, layout.width, layout.decimals),
              plain::in_columns(plainly_rounded(value, decimals),
                                static_cast<std::size_t>(layout.width)))
        << value;
  }
}

// Coordinates, including ties: multiples of 1/16 up to 1000.
TEST(NumberSweep, FixedRealOfSixteenths) {
  std::size_t cases = 0;
  for (int sixteenths = -16000; sixteenths <= 16000; ++sixteenths) {
    expect_plain(static_cast<float>(sixteenths) / 16.0F);
    if (HasFatalFailure()) {
      return;
    }
    cases += kLayouts.size();
  }
  record_cases(cases, 192'006);
}

TEST(NumberSweep, FixedRealOfRandomBits) {
  std::mt19937 random(12);
  std::size_t cases = 0;
  for (int i = 0; i < 30000; ++i) {
    // Mostly exponents up to 2^20, which fit the fields; rarely larger ones.
    const auto bits = static_cast<std::uint32_t>(random());
    const auto value = std::bit_cast<float>(bits);
    const float scaled =
        std::ldexp(1.0F + static_cast<float>(bits % 8388608) / 8388608.0F,
                   static_cast<int>(random() % 34) - 13);
    expect_plain((bits >> 31U) != 0 ? -scaled : scaled);
    if (i % 10 == 0 && std::isfinite(value)) {
      expect_plain(value);
      cases += kLayouts.size();
    }
    if (HasFatalFailure()) {
      return;
    }
    cases += kLayouts.size();
  }
  record_cases(cases, 197'916);
}

}  // namespace
}  // namespace veldmark
