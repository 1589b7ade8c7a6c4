#include "selection/region_dialogue.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "util/fixed_field.h"
#include "util/free_form.h"

namespace veldmark {
namespace {

constexpr int kMessageMargin = 1;
constexpr int kIntroductionMargin = 2;
constexpr int kDiagramMargin = 3;
constexpr int kHeadingMargin = 4;
constexpr int kEntryMargin = 8;
constexpr int kBoxMargin = 18;

constexpr std::size_t kCoordinateWidth = 8;

constexpr float kMaxLatitude = 90.0F;
constexpr float kMaxLongitude = 180.0F;

void write_diagram(ConsoleDialogue& console) {
  constexpr std::string_view kEdge =
      "      :------------------------------------------:";
  constexpr std::string_view kInside =
      "      :                                          :";
  console.write_line(kDiagramMargin,
                     "-180.0/90.0                                      180.0/90.0");
  console.write_line(kDiagramMargin, kEdge);
  console.write_line(kDiagramMargin, kInside);
  console.write_line(kDiagramMargin, kInside);
  console.write_line(kDiagramMargin,
                     "      :           Our Beautiful Planet           :");
  console.write_line(kDiagramMargin, kInside);
  console.write_line(kDiagramMargin, kInside);
  console.write_line(kDiagramMargin, kInside);
  console.write_line(kDiagramMargin, kInside);
  console.write_line(kDiagramMargin, kEdge);
  console.write_line(kDiagramMargin,
                     "-180.0/-90.0                                     180.0/-90.0");
}

void write_entry_rules(ConsoleDialogue& console) {
  const auto line = [&](std::string_view text) {
    console.write_line(kIntroductionMargin, text);
  };
  console.blank_line();
  line("Enter the range of Latitude and Longitude");
  line("from which you would like to extract your data.");
  console.blank_line();
  line("Enter values as REAL numbers to the nearest 0.5");
  line("degree. EXAMPLE a Latitude entered as -89.75 defines ");
  line("cells bounded on the bottom by -90.0 degrees SOUTH.");
  line("Similarly a longitude entered as 179.75 are the cells ");
  line("bounded to the right by 180.0 degrees EAST).");
  console.blank_line();
  console.blank_line();
  line("All LONGITUDES WEST or [LEFT] of Greenwich  ");
  line("are NEGATIVE and EAST or [RIGHT] of Greenwich  ");
  line("are POSITIVE");
  console.blank_line();
  line("All LATITUDES SOUTH or [BELOW] the Equator are");
  line("NEGATIVE and NORTH latitudes, [ABOVE] the equator, are");
  line("POSITIVE.");
  console.blank_line();
  line("Each grid cell value is the observation for that  ");
  line("cells mid-point. Example: for the cell 90.0 Lat. -180.0");
  line("Lon. The actual grid point value given is centered ");
  line("over (89.75,-179.75).");
  console.blank_line();
}

void introduce_region(ConsoleDialogue& console) {
  console.blank_line();
  console.write_line(kHeadingMargin,
                     "Select the Geographical Range of data to extract");
  console.blank_line();
  console.write_line(kIntroductionMargin,
                     "This data set is spatially shaped like a rectangle where");
  console.write_line(kIntroductionMargin,
                     "the top left corner is defined by the coordinates");
  console.blank_line();
  console.write_line(kIntroductionMargin,
                     "-180.0W Lon./90.0N Lat. and the bottom right coordinates are");
  console.write_line(kIntroductionMargin,
                     "180.0E Lon./-90.0S Lat.  (see diagram below)");
  console.blank_line();
  write_diagram(console);
  write_entry_rules(console);
  console.pause(" HIT RETURN to continue");
}

// Asks one coordinate until the answer holds a full stop. Result: degrees, any real.
// An answer with a full stop that is no number ends the run (RunEnd).
float ask_coordinate(ConsoleDialogue& console, std::string_view prompt) {
  for (;;) {
    console.prompt(kEntryMargin, prompt);
    const std::string CoordinateText = console.read_text(kCoordinateWidth);
    if (CoordinateText.find('.') == std::string::npos) {
      console.blank_line();
      console.write_line(kEntryMargin, "Value entered must contain a decimal place.");
      console.write_line(kEntryMargin, " Try Again");
      console.blank_line();
      continue;
    }
    const std::optional<float> degrees = parse_real(first_value(CoordinateText));
    if (!degrees) {
      throw RunEnd::error(kIllegalCharacter, Operation::kRead, Channel::kConsole);
    }
    return *degrees;
  }
}

float ask_max_latitude(ConsoleDialogue& console) {
  for (;;) {
    const float maxLat = ask_coordinate(console, "Enter Max Latitude  [TOP]   ==> ");
    if (-kMaxLatitude <= maxLat && maxLat <= kMaxLatitude) {
      return maxLat;
    }
    console.blank_line();
    console.write_line(kMessageMargin, "Invalid latitude: " + fixed_real(maxLat, 6, 2));
    console.blank_line();
    console.write_line(kEntryMargin, "Valid range is 90.0 <-> -90.0");
  }
}

float ask_min_latitude(ConsoleDialogue& console, float maxLat) {
  for (;;) {
    const float minLat = ask_coordinate(console, "Enter Min Latitude  [BOTTOM]==> ");
    const std::string valid_range =
        "Valid range is" + fixed_real(maxLat, 6, 2) + " -> -90.0";
    if (minLat > maxLat) {
      console.blank_line();
      console.write_line(kEntryMargin, "Your Min. Lat is greater than your Max.Lat");
      console.write_line(kEntryMargin, " MAX. LAT =>  " + fixed_real(maxLat, 6, 2));
      console.write_line(kEntryMargin, valid_range);
    } else if (minLat < -kMaxLatitude) {
      console.blank_line();
      console.write_line(kMessageMargin,
                         "Invalid latitude: " + fixed_real(minLat, 6, 2));
      console.blank_line();
      console.write_line(kEntryMargin, valid_range);
    } else {
      return minLat;
    }
  }
}

bool is_longitude(float degrees) {
  return -kMaxLongitude <= degrees && degrees <= kMaxLongitude;
}

float ask_max_longitude(ConsoleDialogue& console) {
  for (;;) {
    const float maxLon = ask_coordinate(console, "Enter Max Longitude [RIGHT] ==> ");
    if (is_longitude(maxLon)) {
      return maxLon;
    }
    console.blank_line();
    console.write_line(kMessageMargin,
                       "Invalid longitude: " + fixed_real(maxLon, 7, 2));
    console.blank_line();
    console.write_line(kEntryMargin, "Valid range is -180.0 <-> 180.0");
  }
}

// Kept on purpose: no empty line before the message, and its bounds stand in the
// reverse order of the maximum's.
float ask_min_longitude(ConsoleDialogue& console, MinLonTest min_lon_test) {
  for (;;) {
    const float minLon = ask_coordinate(console, "Enter Min Longitude [LEFT]  ==> ");
    if (min_lon_test == MinLonTest::kNone || is_longitude(minLon)) {
      return minLon;
    }
    console.write_line(kMessageMargin,
                       "Invalid longitude: " + fixed_real(minLon, 7, 2));
    console.blank_line();
    console.write_line(kEntryMargin, "Valid range is 180.0 <-> -180.0");
  }
}

// The line of the box that shows its two corners at latitude `lat`.
std::string corner_line(const SearchRegion& region, float lat) {
  const std::string latitude = fixed_real(lat, 8, 2);
  return fixed_real(region.minLon, 8, 2) + "/" + latitude +
         ":------------------------------:" + fixed_real(region.maxLon, 8, 2) + "/" +
         latitude;
}

void show_box(ConsoleDialogue& console, const SearchRegion& region) {
  constexpr std::string_view kHeading =
      "    Lon.    Lat                                     Lon.     Lat.";
  constexpr std::string_view kInside = ":                              :";
  console.blank_line();
  console.write_line(kMessageMargin, "Area defined is :");
  console.blank_line();
  console.write_line(kMessageMargin, kHeading);
  console.write_line(kMessageMargin, corner_line(region, region.maxLat));
  console.write_line(kBoxMargin, kInside);
  console.write_line(kBoxMargin, kInside);
  console.write_line(kBoxMargin, kInside);
  console.write_line(kBoxMargin, ":        Your Selection        :");
  console.write_line(kBoxMargin, kInside);
  console.write_line(kBoxMargin, kInside);
  console.write_line(kBoxMargin, kInside);
  console.write_line(kMessageMargin, corner_line(region, region.minLat));
  console.write_line(kMessageMargin, kHeading);
}

bool confirm_region(ConsoleDialogue& console, const SearchRegion& region) {
  show_box(console, region);
  console.blank_line();
  console.prompt(kMessageMargin, "Is this ok? [T]rue or [F]alse ==> ");
  return console.read_logical();
}

}  // namespace

SearchRegion ask_search_region(ConsoleDialogue& console, MinLonTest min_lon_test) {
  for (;;) {
    introduce_region(console);
    SearchRegion region{};
    region.maxLat = ask_max_latitude(console);
    region.minLat = ask_min_latitude(console, region.maxLat);
    region.maxLon = ask_max_longitude(console);
    region.minLon = ask_min_longitude(console, min_lon_test);
    const bool RegionOk = confirm_region(console, region);
    if (RegionOk) {
      return region;
    }
  }
}

}  // namespace veldmark
