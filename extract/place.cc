#include "extract/place.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numbers>
#include <utility>

#include "extract/decimal_text.h"
#include "grid/grid_layout.h"
#include "util/failure.h"
#include "util/in_quotes.h"

namespace veldmark::extract {
namespace {

constexpr double kPole = 90;
constexpr double kMeridian = 180;
constexpr double kCircle = 360;
constexpr double kCellsPerDegree = 1 / kCellSize;

// Returns the two numbers of "A:B" or "A,B"; nullopt for any other text.
std::optional<std::pair<double, double>> parse_pair(std::string_view text,
                                                    char separator) {
  const std::size_t middle = text.find(separator);
  if (middle == std::string_view::npos) {
    return std::nullopt;
  }
  const std::optional<double> first = parse_degrees(text.substr(0, middle));
  const std::optional<double> second = parse_degrees(text.substr(middle + 1));
  if (!first || !second) {
    return std::nullopt;
  }
  return std::pair(*first, *second);
}

bool is_latitude(double degrees) { return std::abs(degrees) <= kPole; }

bool is_longitude(double degrees) {
  return -kMeridian <= degrees && degrees <= kCircle;
}

std::string range_text(double first, double second) {
  return short_decimal_text(first) + ":" + short_decimal_text(second);
}

// Returns the lowest index 1..count whose centre is at or above `bound`; count + 1 if
// there is none.
std::int32_t first_at_or_above(double bound, double first_centre, std::int32_t count) {
  const double index = std::ceil((bound - first_centre) * kCellsPerDegree) + 1;
  return static_cast<std::int32_t>(std::clamp<double>(index, 1, count + 1));
}

// Returns the highest index 1..count whose centre is at or below `bound`; 0 if there is
// none.
std::int32_t last_at_or_below(double bound, double first_centre, std::int32_t count) {
  const double index = std::floor((bound - first_centre) * kCellsPerDegree) + 1;
  return static_cast<std::int32_t>(std::clamp<double>(index, 0, count));
}

std::int32_t row_in_order(std::int32_t row_from_south, RowOrder order) {
  return order == RowOrder::kSouthFirst ? row_from_south
                                        : kGridRows + 1 - row_from_south;
}

void set_columns(const Box& box, GridRanges& ranges) {
  const std::int32_t west =
      first_at_or_above(box.west, kWesternmostCentre, kGridColumns);
  const std::int32_t east =
      last_at_or_below(box.east, kWesternmostCentre, kGridColumns);
  if (box.west <= box.east) {
    ranges.FirstCol = west;
    ranges.LastCol = east;
  } else if (east == 0) {  // centres in the eastern hemisphere only
    ranges.FirstCol = west;
    ranges.LastCol = kGridColumns;
  } else {
    ranges.FirstCol = 1;
    ranges.LastCol = east;
    if (west <= kGridColumns) {
      ranges.CrossesDateLine = true;
      ranges.EastFirstCol = west;
      ranges.EastLastCol = kGridColumns;
    }
  }
}

}  // namespace

std::optional<double> parse_degrees(std::string_view text) {
  if (text.starts_with('+') && !text.starts_with("+-")) {
    text.remove_prefix(1);
  }
  double value{};
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value);
  if (result.ec != std::errc() || result.ptr != end || !std::isfinite(value)) {
    return std::nullopt;
  }
  return value;
}

double to_signed_longitude(double longitude) {
  return longitude > kMeridian ? longitude - kCircle : longitude;
}

void set_latitudes(std::string_view text, Box& box) {
  const auto edges = parse_pair(text, ':');
  if (!edges) {
    throw UsageError("--lat " + in_quotes(text) +
                     ": give two latitudes, south first, as in --lat 50:60");
  }
  const auto [south, north] = *edges;
  if (!is_latitude(south) || !is_latitude(north)) {
    throw UsageError("--lat " + std::string(text) +
                     ": latitudes lie between -90 and 90; longitudes go to --lon");
  }
  if (south > north) {
    throw UsageError("--lat " + std::string(text) +
                     ": the southern edge comes first; did you mean --lat " +
                     range_text(north, south) + "?");
  }
  box.south = south;
  box.north = north;
}

std::string set_longitudes(std::string_view text, Box& box) {
  const auto edges = parse_pair(text, ':');
  if (!edges) {
    throw UsageError("--lon " + in_quotes(text) +
                     ": give two longitudes, west first, as in --lon -10:10");
  }
  const auto [west, east] = *edges;
  if (!is_longitude(west) || !is_longitude(east)) {
    throw UsageError("--lon " + std::string(text) +
                     ": longitudes lie between -180 and 360");
  }
  if (east - west > kCircle) {
    throw UsageError("--lon " + std::string(text) +
                     ": that is more than once around the globe");
  }
  const bool whole_circle = east - west == kCircle;
  box.west = whole_circle ? -kMeridian : to_signed_longitude(west);
  box.east = whole_circle ? kMeridian : to_signed_longitude(east);
  if (box.west == west && box.east == east) {
    return "";
  }
  return "--lon " + std::string(text) + " taken as " + range_text(box.west, box.east);
}

Point parse_point(std::string_view text) {
  const auto degrees = parse_pair(text, ',');
  if (!degrees) {
    throw UsageError("--cell " + in_quotes(text) +
                     ": give latitude and longitude, as in --cell 60.25,-139.75");
  }
  const auto [latitude, longitude] = *degrees;
  if (!is_latitude(latitude)) {
    const bool exchanged = is_latitude(longitude) && is_longitude(latitude);
    throw UsageError("--cell " + std::string(text) +
                     ": the first number is the latitude, between -90 and 90" +
                     (exchanged ? "; are latitude and longitude exchanged?" : ""));
  }
  if (!is_longitude(longitude)) {
    throw UsageError("--cell " + std::string(text) +
                     ": the second number is the longitude, between -180 and 360");
  }
  return {latitude, to_signed_longitude(longitude)};
}

GridRanges ranges_of(const Box& box, RowOrder order) {
  GridRanges ranges;
  const std::int32_t south =
      first_at_or_above(box.south, kSouthernmostCentre, kGridRows);
  const std::int32_t north =
      last_at_or_below(box.north, kSouthernmostCentre, kGridRows);
  const bool south_first = order == RowOrder::kSouthFirst;
  ranges.FirstRow = row_in_order(south_first ? south : north, order);
  ranges.LastRow = row_in_order(south_first ? north : south, order);
  set_columns(box, ranges);
  return ranges;
}

Cell cell_of(const Point& point, RowOrder order) {
  constexpr std::int32_t kEquatorRow = 181;       // the first one north of it
  constexpr std::int32_t kGreenwichColumn = 361;  // the first one east of it
  const auto row = static_cast<std::int32_t>(
      std::floor(point.latitude * kCellsPerDegree) + kEquatorRow);
  const auto column = static_cast<std::int32_t>(
      std::floor(point.longitude * kCellsPerDegree) + kGreenwichColumn);
  return {.GridY = row_in_order(std::min(row, kGridRows), order),
          .GridX = column > kGridColumns ? 1 : column};
}

Point centre_of(const Cell& cell, RowOrder order) {
  return {.latitude = static_cast<double>(CellLat(order)[cell.GridY]),
          .longitude = static_cast<double>(CellLon[cell.GridX])};
}

double distance_km(const Point& a, const Point& b) {
  constexpr double kEarthRadius = 6371.0088;  // km, the mean radius
  constexpr double kRadian = std::numbers::pi / kMeridian;
  // The haversine formula, which is accurate for short distances. The remainder takes
  // the shorter way round, so that distances across the date line are right.
  const double dlon = std::remainder(b.longitude - a.longitude, kCircle);
  const double dy = std::sin((b.latitude - a.latitude) * kRadian / 2);
  const double dx = std::sin(dlon * kRadian / 2);
  const double h = dy * dy + std::cos(a.latitude * kRadian) *
                                 std::cos(b.latitude * kRadian) * dx * dx;
  return 2 * kEarthRadius * std::asin(std::min(1.0, std::sqrt(h)));
}

}  // namespace veldmark::extract
