#include "series_to_grid/series_file.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "series_to_grid/grid_writer.h"
#include "util/failure.h"

namespace veldmark {
namespace {

constexpr std::string_view kCoordinateLabels = "lon,lat,";
constexpr int kMonthsPerYear = 12;

// A value has to fit a field of the condensed grid file.
constexpr std::size_t kLongestValue = 5;

bool is_digit(char c) { return '0' <= c && c <= '9'; }

std::string quoted(std::string_view text) { return "'" + std::string(text) + "'"; }

// Cuts the text up to the next comma (or the end) off the front of `rest`.
std::string_view take_field(std::string_view& rest) {
  const std::size_t comma = rest.find(',');
  const std::string_view field = rest.substr(0, comma);
  rest.remove_prefix(comma == std::string_view::npos ? rest.size() : comma + 1);
  return field;
}

std::size_t count_fields(std::string_view line) {
  return static_cast<std::size_t>(std::count(line.begin(), line.end(), ',')) + 1;
}

// Hands out the lines of the input, without their ends, and knows where it is.
class LineReader {
 public:
  explicit LineReader(std::istream& input) : input_(input) {}

  // Result: false at the end of the input.
  bool next() {
    ++number_;
    if (!std::getline(input_, line_)) {
      if (input_.bad()) fail("the input cannot be read");
      return false;
    }
    if (input_.eof()) fail("the line end is missing; the series may be cut short");
    if (!line_.empty() && line_.back() == '\r') line_.pop_back();
    return true;
  }

  [[nodiscard]] std::string_view line() const { return line_; }
  [[nodiscard]] int number() const { return number_; }

  // Ends the reading with a message about the current line.
  [[noreturn]] void fail(const std::string& what) const {
    throw Failure("line " + std::to_string(number_) + ": " + what);
  }

 private:
  std::istream& input_;
  std::string line_;
  int number_ = 0;
};

// A month as a count of months since January of the year 0, so that neighbours differ
// by one; nothing when the text is not YYYY-MM.
std::optional<int> parse_month(std::string_view text) {
  constexpr std::string_view kShape = "dddd-dd";
  const auto fits = [](char c, char shape) {
    return shape == 'd' ? is_digit(c) : c == shape;
  };
  if (!std::equal(text.begin(), text.end(), kShape.begin(), kShape.end(), fits)) {
    return std::nullopt;
  }
  int year = 0;
  int month = 0;
  std::from_chars(text.data(), text.data() + 4, year);
  std::from_chars(text.data() + 5, text.data() + 7, month);
  if (month < 1 || month > kMonthsPerYear) return std::nullopt;
  return year * kMonthsPerYear + month - 1;
}

std::string month_label(int month) {
  const std::string year = std::to_string(month / kMonthsPerYear);
  const std::string of_year = std::to_string(month % kMonthsPerYear + 1);
  return std::string(4 - year.size(), '0') + year + "-" +
         std::string(2 - of_year.size(), '0') + of_year;
}

// Reads line 1 into the years of `series`.
void read_header(LineReader& reader, Series& series) {
  constexpr std::string_view kGzipMark = "\x1f\x8b";
  if (!reader.next()) reader.fail("the header is missing; the input is empty");
  std::string_view rest = reader.line();
  if (rest.substr(0, kGzipMark.size()) == kGzipMark) {
    reader.fail("the series is compressed; feed it through zcat");
  }
  if (rest.substr(0, kCoordinateLabels.size()) != kCoordinateLabels) {
    reader.fail("the header must begin with 'lon,lat,' and the first month");
  }
  rest.remove_prefix(kCoordinateLabels.size());

  const std::size_t months = count_fields(rest);
  int first = 0;
  int last = 0;
  for (std::size_t i = 0; i < months; ++i) {
    const std::string_view label = take_field(rest);
    const std::optional<int> month = parse_month(label);
    if (!month) reader.fail(quoted(label) + " is not a month (YYYY-MM)");
    if (i == 0) {
      first = *month;
    } else if (*month != last + 1) {
      reader.fail(quoted(label) + " follows " + month_label(last) +
                  "; the months must have no gap");
    }
    last = *month;
  }
  if (first % kMonthsPerYear != 0) {
    reader.fail("the first month is " + month_label(first) + ", not a January");
  }
  if (last % kMonthsPerYear != kMonthsPerYear - 1) {
    reader.fail("the last month is " + month_label(last) + ", not a December");
  }
  series.first_year = first / kMonthsPerYear;
  series.last_year = last / kMonthsPerYear;
}

// Finds the band 1..count whose centre `text` names exactly; band 1 is centred at
// `first_centre` degrees and the next ones follow at 0.5 degree. All centres are exact
// in binary, so that equality is the right test. Nothing for any other text.
std::optional<int> find_band(std::string_view text, double first_centre, int count) {
  double degrees = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(),
                                            degrees, std::chars_format::fixed);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  const double steps = (degrees - first_centre) * 2;
  if (!(0 <= steps && steps < count) || steps != std::floor(steps)) return std::nullopt;
  return static_cast<int>(steps) + 1;
}

int parse_value(const LineReader& reader, std::string_view text, int month) {
  const std::string_view digits = text.substr(text.substr(0, 1) == "-" ? 1 : 0);
  if (digits.empty() || !std::all_of(digits.begin(), digits.end(), is_digit)) {
    reader.fail(month_label(month) + ": " + quoted(text) + " is not an integer");
  }
  if (text.size() > kLongestValue) {
    reader.fail(month_label(month) + ": " + quoted(text) +
                " has more than five characters");
  }
  int value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

// Reads the current line as one cell of `months` values from `first_month` on.
CellSeries read_cell(const LineReader& reader, int first_month, std::size_t months) {
  std::string_view rest = reader.line();
  if (const std::size_t found = count_fields(rest); found != months + 2) {
    reader.fail("found " + std::to_string(found) + " fields, expected " +
                std::to_string(months + 2) + ": longitude, latitude and " +
                std::to_string(months) + " values");
  }
  CellSeries cell;
  const std::string_view lon = take_field(rest);
  const std::optional<int> column = find_band(lon, kFirstLongitude, kGridColumns);
  if (!column) reader.fail(quoted(lon) + " is not the longitude of a cell's centre");
  const std::string_view lat = take_field(rest);
  const std::optional<int> row = find_band(lat, kFirstLatitude, kGridRows);
  if (!row) reader.fail(quoted(lat) + " is not the latitude of a cell's centre");
  cell.GridX = *column;
  cell.south_row = *row;
  cell.values.reserve(months);
  for (int month = first_month; cell.values.size() < months; ++month) {
    cell.values.push_back(parse_value(reader, take_field(rest), month));
  }
  return cell;
}

}  // namespace

Series read_series(std::istream& input) {
  LineReader reader(input);
  Series series;
  read_header(reader, series);
  const int first_month = series.first_year * kMonthsPerYear;
  const int years = series.last_year - series.first_year + 1;
  const auto months = static_cast<std::size_t>(years) * kMonthsPerYear;

  // The line that lists a cell, 0 for none.
  std::vector<int> listed_on(std::size_t{kGridRows} * kGridColumns, 0);
  while (reader.next()) {
    CellSeries cell = read_cell(reader, first_month, months);
    const int place = (cell.south_row - 1) * kGridColumns + cell.GridX - 1;
    int& line = listed_on.at(static_cast<std::size_t>(place));
    if (line != 0) {
      reader.fail("the cell is already listed on line " + std::to_string(line));
    }
    line = reader.number();
    series.cells.push_back(std::move(cell));
  }
  if (series.cells.empty()) reader.fail("the series lists no cell");
  return series;
}

}  // namespace veldmark
