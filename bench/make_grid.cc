// Makes a condensed grid file of full size, 1901-2016, with invented values on the real
// land cells, for measurements:
//
//   gzip -dc docs/recipes/land_mask.txt.gz | make_grid OUTPUT mixed|frost
//
//   mixed   about -600..360, in every fourth column ten times that, and one value in
//           20,000 from 10000 to 13498, so that texts of one to five characters occur
//   frost   0..3100, like frost days: constant zeros in the tropics
//
// The mask has 360 lines from south to north of 720 characters, 1 for land. Of the
// values on land about one in 500 is missing; the sea is missing in every month. The
// same mask gives the same file on every machine: nothing but integers is computed.

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr int kRows = 360;
constexpr int kColumns = 720;
constexpr int kYears = 116;
constexpr int kMonthsPerYear = 12;
constexpr int kFieldWidth = 5;
constexpr int kLineSize = kColumns * kFieldWidth + 1;
constexpr int kMissing = -999;

constexpr std::uint64_t kMissingOneIn = 500;
constexpr std::uint64_t kFiveDigitsOneIn = 20'000;

enum class Kind { kMixed, kFrost };

// Both counted from 0, rows from the south.
struct LandCell {
  int row;
  int column;

  [[nodiscard]] std::int64_t number() const {
    return std::int64_t{row} * kColumns + column;
  }
  [[nodiscard]] std::ptrdiff_t offset_in_month() const {
    return std::ptrdiff_t{row} * kLineSize + std::ptrdiff_t{column} * kFieldWidth;
  }
};

std::vector<LandCell> read_land_cells(std::istream& mask) {
  std::vector<LandCell> cells;
  std::string line;
  for (int row = 0; row < kRows; ++row) {
    if (!std::getline(mask, line) || line.size() != kColumns) {
      throw std::runtime_error("the mask needs 360 lines of 720 characters");
    }
    for (int column = 0; column < kColumns; ++column) {
      if (line[static_cast<std::size_t>(column)] == '1') {
        cells.push_back({row, column});
      }
    }
  }
  return cells;
}

// Returns a hash of an index, so that neighbouring indices are uncorrelated (the
// finaliser of splitmix64).
std::uint64_t hash_of(std::uint64_t index) {
  std::uint64_t bits = (index + 1) * 0x9E3779B97F4A7C15U;
  bits = (bits ^ (bits >> 30U)) * 0xBF58476D1CE4E5B9U;
  bits = (bits ^ (bits >> 27U)) * 0x94D049BB133111EBU;
  return bits ^ (bits >> 31U);
}

// Tenths of a degree C: colder and more seasonal towards the poles, the seasons
// reversed in the south, and slowly warmer over the years.
int seasonal_temperature(int row, int year, int month) {
  // The cosine of the month's angle, January first, in thousandths.
  constexpr std::array<int, kMonthsPerYear> kWinter{1000,  866,  500,  0, -500, -866,
                                                    -1000, -866, -500, 0, 500,  866};
  const int quarter_degrees = 2 * row - (kRows - 1);
  const int distance = std::abs(quarter_degrees);
  const int winter = kWinter.at(static_cast<std::size_t>(month)) *
                     (quarter_degrees > 0 ? distance : -distance) / 1000;
  return 290 - distance * 3 / 2 - winter + year / 12;
}

int mixed_value(int temperature, int column, std::uint64_t bits) {
  if ((bits >> 12U) % kFiveDigitsOneIn == 0) {
    return 10'000 + static_cast<int>((bits >> 40U) % 3499);
  }
  return column % 4 == 0 ? temperature * 10 : temperature;
}

int frost_value(int temperature, std::uint64_t bits) {
  constexpr int kMaxFrost = 3100;  // hundredths of a day
  const int frost = (150 - temperature) * 8 + static_cast<int>((bits >> 40U) % 8);
  return std::clamp(frost, 0, kMaxFrost);
}

int land_value(Kind kind, const LandCell& cell, int year, int month) {
  const std::int64_t months_before = std::int64_t{year} * kMonthsPerYear + month;
  const std::uint64_t bits = hash_of(
      static_cast<std::uint64_t>(months_before * kRows * kColumns + cell.number()));
  if (bits % kMissingOneIn == 0) {
    return kMissing;
  }
  const int weather = static_cast<int>((bits >> 24U) % 121) - 60;
  const int temperature = seasonal_temperature(cell.row, year, month) + weather;
  return kind == Kind::kFrost ? frost_value(temperature, bits)
                              : mixed_value(temperature, cell.column, bits);
}

void put_value(char* field, int value) {
  std::array<char, kFieldWidth> digits{};
  const char* const end =
      std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
  const auto length = end - digits.data();
  char* const number = std::fill_n(field, kFieldWidth - length, ' ');
  std::copy_n(digits.data(), length, number);
}

// A month of sea, which the land values of each month are written into.
std::string month_of_sea() {
  std::string line;
  for (int column = 0; column < kColumns; ++column) {
    line += " -999";
  }
  line += '\n';
  std::string text;
  for (int row = 0; row < kRows; ++row) {
    text += line;
  }
  return text;
}

void make_grid(Kind kind, const std::vector<LandCell>& cells, std::ostream& output) {
  std::string text = month_of_sea();
  for (int year = 0; year < kYears; ++year) {
    for (int month = 0; month < kMonthsPerYear; ++month) {
      for (const LandCell& cell : cells) {
        put_value(text.data() + cell.offset_in_month(),
                  land_value(kind, cell, year, month));
      }
      output.write(text.data(), static_cast<std::streamsize>(text.size()));
    }
  }
}

Kind parse_kind(const std::string& word) {
  if (word != "mixed" && word != "frost") {
    throw std::runtime_error("the values are mixed or frost, not " + word);
  }
  return word == "frost" ? Kind::kFrost : Kind::kMixed;
}

void run(const std::vector<std::string>& arguments) {
  if (arguments.size() != 2) {
    throw std::runtime_error("usage: make_grid OUTPUT mixed|frost < MASK");
  }
  const Kind kind = parse_kind(arguments[1]);
  const std::vector<LandCell> cells = read_land_cells(std::cin);
  std::ofstream output(arguments[0], std::ios::binary);
  make_grid(kind, cells, output);
  output.close();
  if (!output) {
    throw std::runtime_error("cannot write " + arguments[0]);
  }
}

}  // namespace

int main(int argc, char** argv) {
  try {
    run({argv + 1, argv + argc});
  } catch (const std::exception& failure) {
    std::cerr << "make_grid: " << failure.what() << '\n';
    return EXIT_FAILURE;
  }
  return EXIT_SUCCESS;
}
