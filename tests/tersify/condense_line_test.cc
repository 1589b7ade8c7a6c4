#include "tersify/condense_line.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <iterator>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "companion/line_buffer.h"
#include "raw_text.h"
#include "tersify/character_masks.h"

namespace veldmark::tersify {
namespace {

using companion::kLinePadding;
using testing::condensed_line;
using testing::numbers;
using testing::raw_line;
using testing::raw_line_with;

// Returns the condensed line, or "field N: reason".
std::string condensed(const std::string& line) {
  // The padding must not matter: it is filled with digits, which would show.
  const std::string text =
      std::string(kLinePadding, '7') + line + std::string(kLinePadding, '7');
  std::vector<char> output(kCondensedCapacity, '?');
  const std::string_view view =
      std::string_view(text).substr(kLinePadding, line.size());
  const std::optional<LineFault> fault = condense_line(view, output.data());
  if (fault) return "field " + std::to_string(fault->field) + ": " + fault->reason;
  return {output.data(), kCondensedLine};
}

bool is_usual(const std::string& line) {
  const std::string text =
      std::string(kLinePadding, '7') + line + std::string(kLinePadding, '7');
  std::vector<char> output(kCondensedCapacity, '?');
  return condense_line_fast(std::string_view(text).substr(kLinePadding, line.size()),
                            output.data());
}

// The plain definition: streams and numbers instead of masks. Returns "" for an
// invalid line.
std::string plain_condensed(const std::string& line) {
  std::istringstream words(line);
  const std::vector<std::string> fields{std::istream_iterator<std::string>(words), {}};
  if (fields.size() != kGridColumns) return "";
  std::string all;
  for (const std::string& field : fields) {
    char* end = nullptr;
    const std::string text = std::to_string(std::strtol(field.c_str(), &end, 10));
    if (*end != '\0' || end == field.c_str() || text.size() > 5) return "";
    all += std::string(5 - text.size(), ' ') + text;
  }
  return all;
}

TEST(CondenseLine, EachNumberGetsFiveColumns) {
  EXPECT_EQ(condensed(raw_line(numbers())), condensed_line(numbers()));
  EXPECT_TRUE(is_usual(raw_line(numbers())));
}

TEST(CondenseLine, OneBlankOrOneTabIsEnough) {
  EXPECT_EQ(condensed(raw_line(numbers(), " ")), condensed_line(numbers()));
  EXPECT_EQ(condensed(raw_line(numbers(), "\t")), condensed_line(numbers()));
}

TEST(CondenseLine, WidthsDoNotMatter) {
  for (std::size_t width = 1; width <= 70; ++width) {
    const std::string line = raw_line(numbers(), std::string(width, ' '));
    ASSERT_EQ(condensed(line), condensed_line(numbers())) << width;
    ASSERT_TRUE(is_usual(line)) << width;
  }
}

TEST(CondenseLine, BlanksBeforeTheFirstAndAfterTheLastNumberAreOptional) {
  const std::string line = raw_line(numbers(), " ");
  EXPECT_EQ(condensed(line.substr(1)), condensed_line(numbers()));
  for (std::size_t blanks = 1; blanks <= 130; ++blanks) {
    ASSERT_EQ(condensed(line + std::string(blanks, ' ')), condensed_line(numbers()));
  }
}

TEST(CondenseLine, FiveCharactersAreTheLimit) {
  std::vector<std::string> fields = numbers();
  fields[6] = "-9999";
  fields[7] = "99999";
  EXPECT_EQ(condensed(raw_line(fields)), condensed_line(fields));
  EXPECT_TRUE(is_usual(raw_line(fields)));
  EXPECT_EQ(condensed(raw_line_with(7, "123456")),
            "field 7: '123456' needs more than five characters");
  EXPECT_EQ(condensed(raw_line_with(720, "-10000")),
            "field 720: '-10000' needs more than five characters");
}

TEST(CondenseLine, SixCharactersAreDetectedAnywhere) {
  for (int field = 1; field <= 720; ++field) {
    ASSERT_EQ(condensed(raw_line_with(field, "123456")),
              "field " + std::to_string(field) +
                  ": '123456' needs more than five characters");
  }
}

TEST(CondenseLine, AnIntegerGetsItsShortestText) {
  const std::vector<std::pair<std::string, std::string>> cases{
      {"+7", "7"},          {"007", "7"},           {"-007", "-7"}, {"-0", "0"},
      {"+0", "0"},          {"000", "0"},           {"00", "0"},    {"-00", "0"},
      {"0099999", "99999"}, {"-000009999", "-9999"}};
  for (const auto& [raw, shortest] : cases) {
    for (const int field : {1, 11, 720}) {
      std::vector<std::string> fields = numbers();
      fields.at(static_cast<std::size_t>(field - 1)) = shortest;
      EXPECT_EQ(condensed(raw_line_with(field, raw)), condensed_line(fields)) << raw;
      EXPECT_FALSE(is_usual(raw_line_with(field, raw))) << raw;
    }
  }
}

// A mask covers 64 characters; a number may be split between two of them.
TEST(CondenseLine, ANumberMayLieAnywhereInTheBlocks) {
  std::vector<std::string> fields = numbers();
  fields[0] = "7";
  for (std::size_t blanks = 0; blanks <= 130; ++blanks) {
    const std::string indent(blanks, ' ');
    ASSERT_TRUE(is_usual(indent + raw_line(fields))) << blanks;
    ASSERT_EQ(condensed(indent + raw_line(fields)), condensed_line(fields)) << blanks;
    for (const std::string raw : {"07", "+7", "0007"}) {
      ASSERT_EQ(condensed(indent + raw_line_with(1, raw)), condensed_line(fields))
          << blanks << " " << raw;
    }
    for (const std::string raw : {"-", "-x", "1-1"}) {
      ASSERT_EQ(condensed(indent + raw_line_with(1, raw)),
                "field 1: '" + raw + "' is not an integer");
    }
    ASSERT_EQ(condensed(indent + raw_line_with(1, "-0")),
              condensed(raw_line_with(1, "0")));
  }
}

TEST(CondenseLine, AWordThatIsNotAnIntegerIsNamed) {
  for (const std::string text :
       {"1x", "x", "-", "+", "1-2", "--1", "+-1", "5-", "1.5", "1e3", "0x1", "1,2"}) {
    for (const int field : {1, 2, 360, 720}) {
      EXPECT_EQ(
          condensed(raw_line_with(field, text)),
          "field " + std::to_string(field) + ": '" + text + "' is not an integer");
    }
  }
}

TEST(CondenseLine, ControlCharactersAreReplacedInMessages) {
  EXPECT_EQ(condensed(raw_line_with(3, std::string("\x1b[2J\0\r", 6))),
            "field 3: '?[2J?"
            "?' is not an integer");
  EXPECT_EQ(condensed(raw_line_with(3, std::string(100, 'a'))),
            "field 3: 'aaaaaaaaaaaaaaaaaaaa...' is not an integer");
}

TEST(CondenseLine, EveryInvalidCharacterIsDetected) {
  for (int c = 0; c < 256; ++c) {
    const char character = static_cast<char>(c);
    const std::string known = "0123456789 \t";
    if (known.find(character) != std::string::npos) continue;
    EXPECT_EQ(condensed(raw_line_with(50, std::string("1") + character)).substr(0, 10),
              "field 50: ")
        << c;
  }
}

TEST(CondenseLine, AnEmptyLineIsAFault) {
  EXPECT_EQ(condensed(""), "field 1: the line is empty");
  EXPECT_EQ(condensed(" \t "), "field 1: the line is empty");
}

TEST(CondenseLine, ALineWithoutExactly720NumbersIsAFault) {
  std::vector<std::string> fields = numbers();
  fields.pop_back();
  EXPECT_EQ(condensed(raw_line(fields)),
            "field 720: the line ends before it; a line holds 720 integers");
  fields = numbers();
  fields.emplace_back("8");
  EXPECT_EQ(condensed(raw_line(fields)),
            "field 721: '8' is too many; a line holds 720 integers");
}

TEST(CondenseLine, SurplusNumbersStayWithinTheBuffer) {
  EXPECT_EQ(condensed(testing::repeated(5000, "1 ")),
            "field 721: '1' is too many; a line holds 720 integers");
}

TEST(CondenseLine, TheFirstFaultIsReported) {
  std::vector<std::string> fields = numbers();
  fields[10] = "a";
  fields[20] = "123456";
  fields.pop_back();
  EXPECT_EQ(condensed(raw_line(fields)), "field 11: 'a' is not an integer");
}

// Returns a random line, mostly valid.
std::string random_line(std::mt19937& random) {
  const auto below = [&](unsigned limit) {
    return static_cast<unsigned>(random()) % limit;
  };
  const bool shortest = below(2) == 0;
  const unsigned widest = 1 + below(9);
  const unsigned fault_in = below(3) == 0 ? below(720) : 720;
  static const std::vector<std::string> faults{"x", "-",  "1-", "123456", "-12345",
                                               "+", "--", "",   "1 1",    "0000000x"};
  std::string line;
  for (unsigned field = 0; field < 720; ++field) {
    for (unsigned i = 0; i < 1 + below(widest); ++i) {
      line += !shortest && below(8) == 0 ? '\t' : ' ';
    }
    if (field == fault_in) {
      line += faults[below(static_cast<unsigned>(faults.size()))];
      continue;
    }
    const bool negative = below(3) == 0;
    static const std::vector<unsigned> limits{1, 10, 100, 1000, 10000, 100000};
    unsigned value = below(limits[below(negative ? 5 : 6)]);
    if (negative) line += shortest && value == 0 ? "" : "-";
    if (!shortest && !negative && below(5) == 0) line += "+";
    if (!shortest && below(5) == 0) line += std::string(below(8), '0');
    line += std::to_string(value);
  }
  line += std::string(below(70), ' ');
  return line;
}

TEST(CondenseLine, AgreesWithTheReferenceOnRandomLines) {
  std::mt19937 random(1);
  int good = 0;
  int usual = 0;
  for (int i = 0; i < 3000; ++i) {
    const std::string line = random_line(random);
    const std::string expected = plain_condensed(line);
    const std::string found = condensed(line);
    if (expected.empty()) {
      ASSERT_TRUE(found.starts_with("field ")) << line;
    } else {
      ++good;
      if (is_usual(line)) ++usual;
      ASSERT_EQ(found, expected) << line;
    }
  }
  // Both implementations and some faults have been covered.
  EXPECT_GT(usual, 300);
  EXPECT_GT(good - usual, 300);
  EXPECT_GT(3000 - good, 300);
}

TEST(CharacterMasks, VectorsAgreeWithTheScalarVersion) {
  std::mt19937 random(2);
  for (int i = 0; i < 2000; ++i) {
    std::string text(kMaskedCharacters, ' ');
    for (char& c : text) {
      c = i % 2 == 0 ? static_cast<char>(random()) : " -0123456789/:\t"[random() % 15];
    }
    const CharacterMasks found = find_kinds(text.data());
    const CharacterMasks expected = find_kinds_scalar(text.data());
    ASSERT_EQ(found.blanks, expected.blanks);
    ASSERT_EQ(found.minuses, expected.minuses);
    ASSERT_EQ(found.digits, expected.digits);
    ASSERT_EQ(found.zeros, expected.zeros);
  }
}

}  // namespace
}  // namespace veldmark::tersify
