// Parses places in degrees, from a command line or a table of sites, and finds the
// cells of the 0.5-degree grid that belong to them.
//
// Longitudes from -180 to 360 are accepted: 282 and -78 are the same meridian.

#ifndef VELDMARK_EXTRACT_PLACE_H_
#define VELDMARK_EXTRACT_PLACE_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "selection/grid_geometry.h"

namespace veldmark::extract {

// A point in degrees, north and east positive; longitude -180..180.
struct Point {
  double latitude = 0;
  double longitude = 0;
};

// A rectangle in degrees; all four edges belong to it. A west greater than east means a
// rectangle across the 180 degree meridian. Longitudes -180..180.
struct Box {
  double south = -90;
  double north = 90;
  double west = -180;
  double east = 180;
};

// A cell of a file: row and column, counted from 1 in the order of the file.
struct Cell {
  std::int32_t GridY = 0;
  std::int32_t GridX = 0;

  // NOLINTNEXTLINE(modernize-use-nullptr): wrong for a defaulted <=>
  friend auto operator<=>(const Cell&, const Cell&) = default;
};

// Returns the number in `text`: decimal, with an optional sign and exponent. Returns
// nullopt for any other text, including blanks, infinities and NaN.
std::optional<double> parse_degrees(std::string_view text);

// Returns `longitude` (-180..360) as a longitude of -180..180.
double to_signed_longitude(double longitude);

// Sets the southern and northern edge of `box` from the text "S:N".
// Throws UsageError for any other text, for latitudes beyond the poles, and if S is
// north of N.
void set_latitudes(std::string_view text, Box& box);

// Sets the western and eastern edge of `box` from the text "W:E". A span of 360 degrees
// is the whole circle.
// Returns a note such as "--lon 282:287 taken as -78:-73"; empty if the edges are as
// given.
// Throws UsageError for any other text, longitudes outside -180..360, and a span of
// more than 360 degrees.
std::string set_longitudes(std::string_view text, Box& box);

// Reads a point from the text "LAT,LON". Throws UsageError.
Point parse_point(std::string_view text);

// Returns the rows and columns whose centres lie in `box`, edges included, in the order
// of a file. Ranges of a box without centres are empty (last < first). A box across the
// date line with centres on one side only has one column range.
GridRanges ranges_of(const Box& box, RowOrder order);

// Returns the cell that contains `point`. A point on an edge belongs to the cell north
// and east of it; the north pole belongs to the northernmost row, and 180 E, which is
// 180 W, to the westernmost column.
Cell cell_of(const Point& point, RowOrder order);

// Returns the centre of a cell.
Point centre_of(const Cell& cell, RowOrder order);

// Returns the distance along the great circle, on a sphere of 6371.0088 km radius.
double distance_km(const Point& a, const Point& b);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_PLACE_H_
