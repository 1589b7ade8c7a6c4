#include "series_to_grid/series_file.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "companion/digits.h"
#include "grid/grid_layout.h"
#include "util/failure.h"
#include "util/in_quotes.h"

namespace veldmark::series_to_grid {
namespace {

using companion::LineBuffer;

constexpr std::string_view kCoordinateLabels = "lon,lat,";

// A value must fit in a field of the condensed grid file; veldmark reads it into 16
// bits.
constexpr std::size_t kLongestValue = 5;

// Removes the text up to the next comma or the end from `rest`, and returns it.
std::string_view take_field(std::string_view& rest) {
  const std::size_t comma = rest.find(',');
  const std::string_view field = rest.substr(0, comma);
  rest.remove_prefix(comma == std::string_view::npos ? rest.size() : comma + 1);
  return field;
}

std::size_t count_fields(std::string_view line) {
  return static_cast<std::size_t>(std::count(line.begin(), line.end(), ',')) + 1;
}

// Reads the input line by line, and keeps the line number for messages.
class SeriesLines {
 public:
  explicit SeriesLines(LineBuffer::ReadMore read_more)
      : lines_(std::move(read_more), kLongestSeriesLine) {}

  // Reads the next line. Returns false at the end of the input.
  bool next() {
    ++number_;
    const std::optional<LineBuffer::Line> read = lines_.next();
    if (!read) {
      return false;
    }
    if (read->end == LineBuffer::End::kTooLong) {
      fail("it is longer than " + std::to_string(kLongestSeriesLine) + " characters");
    }
    if (read->end == LineBuffer::End::kFileEnd) {
      fail("the line end is missing; the series may be cut short");
    }
    line_ = read->text;
    return true;
  }

  // Returns the current line, without its newline; valid until next() is called.
  [[nodiscard]] std::string_view line() const { return line_; }
  [[nodiscard]] std::int32_t number() const { return number_; }

  // Throws Failure with a message about the current line.
  [[noreturn]] void fail(const std::string& what) const {
    throw Failure("line " + std::to_string(number_) + ": " + what);
  }

 private:
  LineBuffer lines_;
  std::string_view line_;
  std::int32_t number_ = 0;
};

// Returns a month as the number of months since January of the year 0; nullopt if the
// text is not YYYY-MM.
std::optional<std::int32_t> parse_month(std::string_view text) {
  if (!companion::has_shape(text, "dddd-dd")) {
    return std::nullopt;
  }
  const std::int32_t year = companion::number_of(text.substr(0, 4));
  const std::int32_t month = companion::number_of(text.substr(5));
  if (month < 1 || month > kMonthsPerYear) {
    return std::nullopt;
  }
  return year * kMonthsPerYear + month - 1;
}

std::string month_label(std::int32_t month) {
  const std::string year = std::to_string(month / kMonthsPerYear);
  const std::string of_year = std::to_string(month % kMonthsPerYear + 1);
  return std::string(4 - year.size(), '0') + year + "-" +
         std::string(2 - of_year.size(), '0') + of_year;
}

// Reads line 1. Returns the series' years, without cells.
Series read_header(SeriesLines& lines) {
  constexpr std::string_view kGzipMark = "\x1f\x8b";
  if (!lines.next()) {
    lines.fail("the header is missing; the input is empty");
  }
  std::string_view rest = companion::without_byte_order_mark(lines.line());
  if (rest.substr(0, kGzipMark.size()) == kGzipMark) {
    lines.fail("the series is compressed; feed it through zcat");
  }
  if (rest.substr(0, kCoordinateLabels.size()) != kCoordinateLabels) {
    lines.fail("the header must begin with 'lon,lat,' and the first month");
  }
  rest.remove_prefix(kCoordinateLabels.size());

  const std::size_t months = count_fields(rest);
  std::int32_t first{};
  std::int32_t last{};
  for (std::size_t i = 0; i < months; ++i) {
    const std::string_view label = take_field(rest);
    const std::optional<std::int32_t> month = parse_month(label);
    if (!month) {
      lines.fail(in_quotes(label, kShownOfField) + " is not a month (YYYY-MM)");
    }
    if (i == 0) {
      first = *month;
    } else if (*month != last + 1) {
      lines.fail(in_quotes(label, kShownOfField) + " follows " + month_label(last) +
                 "; the months must have no gap");
    }
    last = *month;
  }
  if (first % kMonthsPerYear != 0) {
    lines.fail("the first month is " + month_label(first) + ", not a January");
  }
  if (last % kMonthsPerYear != kMonthsPerYear - 1) {
    lines.fail("the last month is " + month_label(last) + ", not a December");
  }
  return {.first_year = first / kMonthsPerYear,
          .last_year = last / kMonthsPerYear,
          .cells = {}};
}

// Returns the row or column, 1..count, whose centre `text` is; nullopt for any other
// text. Number 1 is centred at `first_centre` degrees, and the others follow at
// intervals of the cell size. All centres are exact in binary, so they can be compared
// for equality.
std::optional<std::int32_t> find_band(std::string_view text, double first_centre,
                                      std::int32_t count) {
  double degrees{};
  const char* const text_end = text.data() + text.size();
  const auto [end, error] =
      std::from_chars(text.data(), text_end, degrees, std::chars_format::fixed);
  if (error != std::errc() || end != text_end) {
    return std::nullopt;
  }
  const double steps = (degrees - first_centre) / kCellSize;
  if (!(0 <= steps && steps < count) || steps != std::floor(steps)) {
    return std::nullopt;
  }
  return static_cast<std::int32_t>(steps) + 1;
}

std::int32_t parse_value(const SeriesLines& lines, std::string_view text,
                         std::int32_t month) {
  const bool is_negative = text.starts_with('-');
  const std::string_view digits = text.substr(is_negative ? 1 : 0);
  if (!companion::is_number(digits)) {
    lines.fail(month_label(month) + ": " + in_quotes(text, kShownOfField) +
               " is not an integer");
  }
  if (text.size() > kLongestValue) {
    lines.fail(month_label(month) + ": " + in_quotes(text, kShownOfField) +
               " has more than five characters");
  }
  const std::int32_t magnitude = companion::number_of(digits);
  const std::int32_t value = is_negative ? -magnitude : magnitude;
  // With a minus, five characters are at least -9999.
  if (value > std::numeric_limits<std::int16_t>::max()) {
    lines.fail(month_label(month) + ": " + in_quotes(text, kShownOfField) +
               " is not within -32768..32767");
  }
  return value;
}

// Parses the current line as a cell with `months` values, from `first_month` on.
CellSeries read_cell(const SeriesLines& lines, std::int32_t first_month,
                     std::size_t months) {
  std::string_view rest = lines.line();
  if (const std::size_t found = count_fields(rest); found != months + 2) {
    lines.fail("found " + std::to_string(found) + " fields, expected " +
               std::to_string(months + 2) + ": longitude, latitude and " +
               std::to_string(months) + " values");
  }
  const std::string_view lon = take_field(rest);
  const std::optional<std::int32_t> column =
      find_band(lon, kWesternmostCentre, kGridColumns);
  if (!column) {
    lines.fail(in_quotes(lon, kShownOfField) +
               " is not the longitude of a cell's centre");
  }
  const std::string_view lat = take_field(rest);
  const std::optional<std::int32_t> row =
      find_band(lat, kSouthernmostCentre, kGridRows);
  if (!row) {
    lines.fail(in_quotes(lat, kShownOfField) +
               " is not the latitude of a cell's centre");
  }
  std::vector<std::int32_t> values(months);
  std::int32_t month = first_month;
  for (std::int32_t& value : values) {
    value = parse_value(lines, take_field(rest), month++);
  }
  return {.GridX = *column, .south_row = *row, .values = std::move(values)};
}

}  // namespace

Series read_series(LineBuffer::ReadMore read_more) {
  SeriesLines lines(std::move(read_more));
  Series series = read_header(lines);
  const std::int32_t first_month = series.first_year * kMonthsPerYear;
  const std::int32_t years = series.last_year - series.first_year + 1;
  const auto months = static_cast<std::size_t>(years) * kMonthsPerYear;

  // For each cell, the line that lists it; 0 if none does.
  std::vector<std::int32_t> listed_on(std::size_t{kGridRows} * kGridColumns, 0);
  while (lines.next()) {
    CellSeries cell = read_cell(lines, first_month, months);
    const std::int32_t place = (cell.south_row - 1) * kGridColumns + cell.GridX - 1;
    std::int32_t& line = listed_on.at(static_cast<std::size_t>(place));
    if (line != 0) {
      lines.fail("the cell is already listed on line " + std::to_string(line));
    }
    line = lines.number();
    series.cells.push_back(std::move(cell));
  }
  if (series.cells.empty()) {
    lines.fail("the series lists no cell");
  }
  return series;
}

}  // namespace veldmark::series_to_grid
