#include "selection/region_dialogue.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "selection/region_screens.h"
#include "util/fixed_field.h"
#include "util/free_form.h"

namespace veldmark {
namespace {

constexpr std::size_t kCoordinateWidth = 8;

constexpr float kMaxLatitude = 90.0F;
constexpr float kMaxLongitude = 180.0F;

constexpr auto kNoDecimalPlace = std::to_array<std::string_view>({
    "",
    "        Value entered must contain a decimal place.",
    "         Try Again",
    "",
});

// Asks for a coordinate until the answer contains a full stop. Returns any real, in
// degrees. Throws RunEnd for an answer that contains a full stop but is not a number.
float ask_coordinate(ConsoleDialogue& console, std::string_view prompt) {
  for (;;) {
    console.prompt(prompt);
    const std::string CoordinateText = console.read_text(kCoordinateWidth);
    if (CoordinateText.find('.') == std::string::npos) {
      console.write_lines(kNoDecimalPlace);
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
    const float maxLat =
        ask_coordinate(console, "        Enter Max Latitude  [TOP]   ==> ");
    if (-kMaxLatitude <= maxLat && maxLat <= kMaxLatitude) {
      return maxLat;
    }
    console.write_lines({"", " Invalid latitude: " + fixed_real(maxLat, 6, 2), "",
                         "        Valid range is 90.0 <-> -90.0"});
  }
}

float ask_min_latitude(ConsoleDialogue& console, float maxLat) {
  for (;;) {
    const float minLat =
        ask_coordinate(console, "        Enter Min Latitude  [BOTTOM]==> ");
    const std::string valid_range =
        "        Valid range is" + fixed_real(maxLat, 6, 2) + " -> -90.0";
    if (minLat > maxLat) {
      console.write_lines({"", "        Your Min. Lat is greater than your Max.Lat",
                           "         MAX. LAT =>  " + fixed_real(maxLat, 6, 2),
                           valid_range});
    } else if (minLat < -kMaxLatitude) {
      console.write_lines(
          {"", " Invalid latitude: " + fixed_real(minLat, 6, 2), "", valid_range});
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
    const float maxLon =
        ask_coordinate(console, "        Enter Max Longitude [RIGHT] ==> ");
    if (is_longitude(maxLon)) {
      return maxLon;
    }
    console.write_lines({"", " Invalid longitude: " + fixed_real(maxLon, 7, 2), "",
                         "        Valid range is -180.0 <-> 180.0"});
  }
}

// Kept on purpose: longitude-ranges. Unlike the message for the maximum, this one has
// no empty line before it, and its bounds are in the reverse order.
float ask_min_longitude(ConsoleDialogue& console, MinLonTest min_lon_test) {
  for (;;) {
    const float minLon =
        ask_coordinate(console, "        Enter Min Longitude [LEFT]  ==> ");
    if (min_lon_test == MinLonTest::kNone || is_longitude(minLon)) {
      return minLon;
    }
    console.write_lines({" Invalid longitude: " + fixed_real(minLon, 7, 2), "",
                         "        Valid range is 180.0 <-> -180.0"});
  }
}

bool confirm_region(ConsoleDialogue& console, const SearchRegion& region) {
  show_box(console, region);
  console.blank_line();
  console.prompt(" Is this ok? [T]rue or [F]alse ==> ");
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
