#include "catalogue/field_conversion.h"

#include <array>
#include <optional>

#include "catalogue/field_conversion_avx2.h"
#include "util/fixed_field.h"

namespace veldmark {
namespace {

// Nearly all fields are simple: blanks, an optional minus and digits, up to the right
// edge. A simple field is two pairs of characters and a last digit. A table for each
// pair holds what its digits add to the value, and flags. All other fields are left to
// parse_integer.
//
// A table entry:
//   bit 31      the pair cannot be part of a simple field
//   bit 30      first pair: digits must follow; second pair: it is not all digits
//   bit 29      the pair contains the minus
//   bits 0-16   what its digits add to the value
constexpr std::uint32_t kNotSimple = 1U << 31U;
constexpr std::uint32_t kNeedsDigits = 1U << 30U;
constexpr std::uint32_t kMinus = 1U << 29U;

// The characters 32 (blank) to 63 include all that simple fields are made of.
constexpr unsigned kCharacters = 32;

using PairTable = std::array<std::uint32_t, std::size_t{kCharacters} * kCharacters>;

// Nonzero if `character` lies outside 32..63.
constexpr unsigned outside_table(unsigned character) {
  return character / kCharacters - 1;
}

constexpr std::size_t pair_index(unsigned first, unsigned second) {
  return first % kCharacters + kCharacters * (second % kCharacters);
}

constexpr bool is_digit(unsigned character) {
  return character >= '0' && character <= '9';
}

constexpr std::uint32_t pair_entry(unsigned first, unsigned second,
                                   std::uint32_t weight, bool is_first_pair) {
  const bool simple = (first == ' ' && (second == ' ' || second == '-')) ||
                      ((first == ' ' || first == '-') && is_digit(second)) ||
                      (is_digit(first) && is_digit(second));
  if (!simple) {
    return kNotSimple;
  }
  std::uint32_t entry = 0;
  if (is_digit(first)) {
    entry += (first - '0') * 10 * weight;
  }
  if (is_digit(second)) {
    entry += (second - '0') * weight;
  }
  if (first == '-' || second == '-') {
    entry |= kMinus;
  }
  if (is_first_pair && second != ' ') {
    entry |= kNeedsDigits;
  }
  if (!is_first_pair && !is_digit(first)) {
    entry |= kNeedsDigits;
  }
  return entry;
}

constexpr PairTable pair_table(std::uint32_t weight, bool is_first_pair) {
  PairTable table{};
  for (unsigned first = 0; first < kCharacters; ++first) {
    for (unsigned second = 0; second < kCharacters; ++second) {
      table[pair_index(first, second)] =
          pair_entry(first + ' ', second + ' ', weight, is_first_pair);
    }
  }
  return table;
}

constexpr PairTable kFirstPair = pair_table(1000, true);
constexpr PairTable kSecondPair = pair_table(10, false);

bool convert_unusual_field(std::string_view field, std::int16_t& value) {
  const std::optional<std::int32_t> integer = parse_integer(field);
  if (integer) {
    value = static_cast<std::int16_t>(*integer);
  }
  return integer.has_value();
}

}  // namespace

bool convert_field_by_tables(const char* field, std::int16_t& value) {
  const auto c0 = static_cast<unsigned char>(field[0]);
  const auto c1 = static_cast<unsigned char>(field[1]);
  const auto c2 = static_cast<unsigned char>(field[2]);
  const auto c3 = static_cast<unsigned char>(field[3]);
  const unsigned last_digit = static_cast<unsigned char>(field[4]) - unsigned{'0'};
  const unsigned outside =
      outside_table(c0) | outside_table(c1) | outside_table(c2) | outside_table(c3);
  if (outside != 0 || last_digit > 9) {
    return false;
  }
  const std::uint32_t first = kFirstPair[pair_index(c0, c1)];
  const std::uint32_t second = kSecondPair[pair_index(c2, c3)];
  if (((first | second) & kNotSimple) != 0 || (first & second & kNeedsDigits) != 0) {
    return false;
  }
  // The flags are above the low 16 bits, so the cast drops them.
  const std::uint32_t magnitude = first + second + last_digit;
  const bool negative = ((first | second) & kMinus) != 0;
  value = static_cast<std::int16_t>(negative ? 0 - magnitude : magnitude);
  return true;
}

bool convert_fields_by_tables(std::string_view fields, std::int16_t* values) {
  for (; !fields.empty(); fields.remove_prefix(kFieldWidth), ++values) {
    if (!convert_field_by_tables(fields.data(), *values) &&
        !convert_unusual_field(fields.substr(0, kFieldWidth), *values)) {
      return false;
    }
  }
  return true;
}

bool convert_fields(std::string_view fields, std::int16_t* values) {
  static const bool vectors = has_avx2();
  while (!fields.empty()) {
    if (vectors) {
      const std::size_t converted = convert_fields_avx2(fields, values);
      fields.remove_prefix(converted * kFieldWidth);
      values += converted;
    }
    // Either one of the next six fields is not simple, or fewer than six are left.
    const std::string_view next = fields.substr(0, kFieldsPerVector * kFieldWidth);
    if (!convert_fields_by_tables(next, values)) {
      return false;
    }
    fields.remove_prefix(next.size());
    values += next.size() / kFieldWidth;
  }
  return true;
}

namespace {

bool is_each_integer(std::string_view fields, std::string_view missing) {
  for (; !fields.empty(); fields.remove_prefix(kFieldWidth)) {
    const std::string_view field = fields.substr(0, kFieldWidth);
    if (!missing.starts_with(field) && !parse_integer(field)) {
      return false;
    }
  }
  return true;
}

}  // namespace

bool are_integers(std::string_view fields, std::string_view missing) {
  return missing.starts_with(fields) || is_each_integer(fields, missing);
}

}  // namespace veldmark
