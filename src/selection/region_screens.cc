#include "selection/region_screens.h"

#include <array>
#include <string>
#include <string_view>

#include "util/fixed_field.h"

namespace veldmark {
namespace {

constexpr auto kIntroduction = std::to_array<std::string_view>({
    "",
    "    Select the Geographical Range of data to extract",
    "",
    "  This data set is spatially shaped like a rectangle where",
    "  the top left corner is defined by the coordinates",
    "",
    "  -180.0W Lon./90.0N Lat. and the bottom right coordinates are",
    "  180.0E Lon./-90.0S Lat.  (see diagram below)",
    "",
});

constexpr auto kDiagram = std::to_array<std::string_view>({
    "   -180.0/90.0                                      180.0/90.0",
    "         :------------------------------------------:",
    "         :                                          :",
    "         :                                          :",
    "         :           Our Beautiful Planet           :",
    "         :                                          :",
    "         :                                          :",
    "         :                                          :",
    "         :                                          :",
    "         :------------------------------------------:",
    "   -180.0/-90.0                                     180.0/-90.0",
});

constexpr auto kEntryRules = std::to_array<std::string_view>({
    "",
    "  Enter the range of Latitude and Longitude",
    "  from which you would like to extract your data.",
    "",
    "  Enter values as REAL numbers to the nearest 0.5",
    "  degree. EXAMPLE a Latitude entered as -89.75 defines ",
    "  cells bounded on the bottom by -90.0 degrees SOUTH.",
    "  Similarly a longitude entered as 179.75 are the cells ",
    "  bounded to the right by 180.0 degrees EAST).",
    "",
    "",
    "  All LONGITUDES WEST or [LEFT] of Greenwich  ",
    "  are NEGATIVE and EAST or [RIGHT] of Greenwich  ",
    "  are POSITIVE",
    "",
    "  All LATITUDES SOUTH or [BELOW] the Equator are",
    "  NEGATIVE and NORTH latitudes, [ABOVE] the equator, are",
    "  POSITIVE.",
    "",
    "  Each grid cell value is the observation for that  ",
    "  cells mid-point. Example: for the cell 90.0 Lat. -180.0",
    "  Lon. The actual grid point value given is centered ",
    "  over (89.75,-179.75).",
    "",
});

constexpr auto kBox = std::to_array<std::string_view>({
    "                  :                              :",
    "                  :                              :",
    "                  :                              :",
    "                  :        Your Selection        :",
    "                  :                              :",
    "                  :                              :",
    "                  :                              :",
});

constexpr std::string_view kBoxHeading =
    "     Lon.    Lat                                     Lon.     Lat.";

// Returns the line of the box with its two corners at latitude `lat`.
std::string corner_line(const SearchRegion& region, float lat) {
  const std::string latitude = fixed_real(lat, 8, 2);
  return " " + fixed_real(region.minLon, 8, 2) + "/" + latitude +
         ":------------------------------:" + fixed_real(region.maxLon, 8, 2) + "/" +
         latitude;
}

}  // namespace

void introduce_region(ConsoleDialogue& console) {
  console.write_lines(kIntroduction);
  console.write_lines(kDiagram);
  console.write_lines(kEntryRules);
  console.pause(" HIT RETURN to continue");
}

void show_box(ConsoleDialogue& console, const SearchRegion& region) {
  console.write_lines(
      {"", " Area defined is :", "", kBoxHeading, corner_line(region, region.maxLat)});
  console.write_lines(kBox);
  console.write_lines({corner_line(region, region.minLat), kBoxHeading});
}

}  // namespace veldmark
