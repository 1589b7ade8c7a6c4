// Compares free-form values and stringclean with plain definitions, on all short texts.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <string_view>

#include "support/plain/fields.h"
#include "support/plain/texts.h"
#include "support/sweep.h"
#include "util/free_form.h"
#include "util/stringclean.h"

namespace veldmark {
namespace {

using testing::for_each_text;
using testing::record_cases;

TEST(TextSweep, FirstValueAndLogical) {
  std::size_t cases = 0;
  for (std::size_t length = 0; length <= 6; ++length) {
    cases += for_each_text(" \t,/.tT1'", length, [](const std::string& line) {
      const std::string value = plain::first_value(line);
      ASSERT_EQ(first_value(line), value) << '"' << line << '"';
      ASSERT_EQ(parse_logical(first_value(line)), plain::is_true(value)) << line;
    });
  }
  record_cases(cases, 597'871);
}

// Splits a real into sign, digits and exponent at the marks between them, and computes
// its value with 64 binary digits: more than enough for short texts.
std::optional<float> plain_real(std::string text) {
  bool negative = false;
  if (!text.empty() && (text[0] == '+' || text[0] == '-')) {
    negative = text[0] == '-';
    text.erase(0, 1);
  }
  int exponent = 0;
  const std::size_t mark = text.find_first_of("EeDd");
  if (mark != std::string::npos) {
    std::string power = text.substr(mark + 1);
    text.erase(mark);
    const bool minus = !power.empty() && power[0] == '-';
    if (minus || (!power.empty() && power[0] == '+')) {
      power.erase(0, 1);
    }
    if (power.empty() || !plain::only_digits(power)) {
      return std::nullopt;
    }
    exponent = minus ? -std::stoi(power) : std::stoi(power);
  }
  const std::size_t point = text.find('.');
  if (point != std::string::npos) {
    text.erase(point, 1);
    exponent -= static_cast<int>(text.size() - point);
  }
  if (text.empty() || !plain::only_digits(text)) {
    return std::nullopt;
  }
  const auto digits = static_cast<long double>(std::stol(text));
  const long double power = std::pow(10.0L, std::abs(exponent));
  const long double value = exponent < 0 ? digits / power : digits * power;
  // Halfway between the largest real and the next one that 32 bits cannot hold.
  const bool too_large =
      digits > 0 && (std::isinf(power) ? exponent > 0 : value >= 0x1.FFFFFFp127L);
  const float real = too_large ? std::numeric_limits<float>::infinity()
                               : (digits == 0 ? 0.0F : static_cast<float>(value));
  return negative ? -real : real;
}

void expect_plain_real(const std::string& text) {
  const std::optional<float> got = parse_real(text);
  const std::optional<float> expected = plain_real(text);
  ASSERT_EQ(got.has_value(), expected.has_value()) << '"' << text << '"';
  if (got) {
    ASSERT_EQ(std::bit_cast<std::uint32_t>(*got),
              std::bit_cast<std::uint32_t>(*expected))
        << '"' << text << '"';
  }
}

TEST(TextSweep, RealsOfFewCharacters) {
  std::size_t cases = 0;
  for (std::size_t length = 0; length <= 6; ++length) {
    cases += for_each_text("+-.059eDx", length, expect_plain_real);
  }
  for (std::size_t length = 0; length <= 4; ++length) {
    cases += for_each_text("+-.0123456789EedD x,", length, expect_plain_real);
  }
  record_cases(cases, 766'292);
}

// Every coordinate with two decimals.
TEST(TextSweep, RealsOfCoordinates) {
  std::size_t cases = 0;
  for (int hundredths = 0; hundredths <= 100000; ++hundredths) {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "%d.%02d", hundredths / 100,
                  hundredths % 100);
    for (const char* sign : {"", "+", "-"}) {
      expect_plain_real(sign + std::string(text.data()));
      ++cases;
    }
    if (HasFatalFailure()) {
      return;
    }
  }
  record_cases(cases, 300'003);
}

// A decimal of few digits: digits * 10^exponent.
struct Decimal {
  long long digits;
  int exponent;
};

bool reads_back(const Decimal& decimal, float value) {
  const std::string text =
      std::to_string(decimal.digits) + "e" + std::to_string(decimal.exponent);
  return std::strtof(text.c_str(), nullptr) == value;
}

// Returns the decimal with the fewest digits that parses back to a positive value: the
// nearest decimal of that length, or one next to it.
Decimal plainly_shortest(float value) {
  for (int places = 0;; ++places) {
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%.*e", places, double{value});
    std::string digits(text.data());
    const std::size_t mark = digits.find('e');
    const int exponent = std::stoi(digits.substr(mark + 1)) - places;
    digits.erase(mark);
    if (places > 0) {
      digits.erase(1, 1);
    }
    const Decimal nearest{std::stoll(digits), exponent};
    for (const int beside : {0, 1, -1}) {
      const Decimal decimal{nearest.digits + beside, exponent};
      if (reads_back(decimal, value)) {
        return decimal;
      }
    }
  }
}

std::string with_exponent(const std::string& digits, int exponent) {
  const int shown = exponent + static_cast<int>(digits.size()) - 1;
  std::string power = std::to_string(std::abs(shown));
  if (power.size() < 2) {
    power.insert(0, "0");
  }
  return digits.substr(0, 1) + (digits.size() > 1 ? "." + digits.substr(1) : "") +
         (shown < 0 ? "e-" : "e+") + power;
}

std::string without_exponent(float value, std::string digits, int exponent) {
  if (exponent >= 0) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.0f", double{value});
    return text.data();
  }
  const auto decimals = static_cast<std::size_t>(-exponent);
  if (digits.size() <= decimals) {
    digits.insert(0, decimals + 1 - digits.size(), '0');
  }
  return digits.insert(digits.size() - decimals, ".");
}

std::string plain_free_form(float value) {
  std::string text = "0";
  if (value != 0) {
    const float size = std::fabs(value);
    const Decimal shortest = plainly_shortest(size);
    const std::string digits = std::to_string(shortest.digits);
    const std::string plain = without_exponent(size, digits, shortest.exponent);
    const std::string power = with_exponent(digits, shortest.exponent);
    text = power.size() < plain.size() ? power : plain;
  }
  if (text.find('.') == std::string::npos) {
    text.insert(std::min(text.find('e'), text.size()), ".0");
  }
  text = (std::signbit(value) ? "-" : "") + text;
  if (text.size() > 15) {
    return " ***************";
  }
  return " " + std::string(15 - text.size(), ' ') + text;
}

void expect_plain_free_form(float value) {
  ASSERT_EQ(free_form_real(value), plain_free_form(value))
      << std::bit_cast<std::uint32_t>(value);
}

// All powers of two, where the neighbours of a real are not equally far away, and the
// reals next to them.
TEST(TextSweep, FreeFormRealsAroundPowersOfTwo) {
  std::size_t cases = 0;
  for (std::uint32_t exponent = 0; exponent < 255; ++exponent) {
    for (std::uint32_t beside = 0; beside < 40; ++beside) {
      const std::uint32_t bits = (exponent << 23U) + beside - (exponent > 0 ? 20 : 0);
      expect_plain_free_form(std::bit_cast<float>(bits));
      ++cases;
    }
    if (HasFatalFailure()) {
      return;
    }
  }
  record_cases(cases, 10'200);
}

// Ratios of variances, probabilities, coordinates, values that just fit or just don't,
// and random bits.
TEST(TextSweep, FreeFormReals) {
  std::mt19937 random(9);
  std::size_t cases = 0;
  for (float size = 1e11F; size < 1e15F; size *= 1.001F, ++cases) {
    expect_plain_free_form(size);
    expect_plain_free_form(-size);
  }
  for (int i = 0; i < 40000; ++i) {
    const auto bits = static_cast<std::uint32_t>(random());
    const auto ratio = static_cast<float>(1 + bits % 100000) /
                       static_cast<float>(1 + random() % 100000);
    expect_plain_free_form(ratio);
    if (std::isfinite(std::bit_cast<float>(bits))) {
      expect_plain_free_form(std::bit_cast<float>(bits));
      ++cases;
    }
    if (HasFatalFailure()) {
      return;
    }
    ++cases;
  }
  for (int quarters = -1000; quarters <= 1000; ++quarters, ++cases) {
    expect_plain_free_form(static_cast<float>(quarters) / 4.0F);
  }
  record_cases(cases, 91'070);
}

// All patterns of blanks in up to twelve characters, with every value of n; with
// different letters and with one repeated letter.
TEST(TextSweep, StringcleanOfAllBlankPatterns) {
  std::size_t cases = 0;
  for (std::size_t length = 0; length <= 12; ++length) {
    for (const bool one_letter : {false, true}) {
      cases += for_each_text(" x", length, [&](std::string text) {
        for (std::size_t i = 0; !one_letter && i < length; ++i) {
          text[i] = text[i] == 'x' ? static_cast<char>('a' + i) : ' ';
        }
        for (std::size_t n = 0; n <= length; ++n) {
          std::string cleaned = text;
          stringclean(cleaned, static_cast<std::int32_t>(n));
          ASSERT_EQ(cleaned, plain::without_inner_blanks(text, n))
              << '"' << text << "\", " << n;
        }
      });
    }
  }
  record_cases(cases, 16'382);
}

}  // namespace
}  // namespace veldmark
