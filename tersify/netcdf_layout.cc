#include "tersify/netcdf_layout.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string_view>
#include <vector>

#include "catalogue/variable_name.h"
#include "tersify/netcdf_axes.h"
#include "tersify/netcdf_fault.h"
#include "tersify/netcdf_number.h"
#include "util/in_quotes.h"

namespace veldmark::tersify {
namespace {

struct Found {
  const VariableEntry* entry;
  const NetcdfVariable* variable;
};

// Returns the names of all variables of the file.
std::string names_of(const std::vector<NetcdfVariable>& variables) {
  std::string names;
  for (const NetcdfVariable& variable : variables) {
    names += (names.empty() ? "" : ", ") + in_quotes(variable.name, kShownOfText);
  }
  return names.empty() ? "none" : names;
}

// Finds the variable by its name. The first one won't do: published files also contain
// station counts and standard errors.
Found find_variable(const NetcdfInput& input, const std::string& name) {
  const VariableEntry* named = find_by_file_name(name);
  std::vector<Found> found;
  for (const NetcdfVariable& variable : input.variables()) {
    const VariableEntry* entry = find_by_short_name(variable.name);
    if (entry != nullptr && (named == nullptr || entry == named)) {
      found.push_back({entry, &variable});
    }
  }
  if (found.size() == 1) {
    return found.front();
  }
  const std::string expected =
      named != nullptr ? in_quotes(named->short_name) + ", as in the file's name"
                       : "just one of " + short_names();
  throw NetcdfFault("the variables are " + names_of(input.variables()) + "; expected " +
                    expected);
}

std::string dimensions_text(const NetcdfVariable& variable) {
  std::string text;
  for (const NetcdfDimension& dimension : variable.dimensions) {
    text += (text.empty() ? "" : ", ") + in_quotes(dimension.name, kShownOfText);
  }
  return "(" + text + ")";
}

void expect_dimensions(const NetcdfVariable& variable) {
  const std::vector<NetcdfDimension>& found = variable.dimensions;
  const auto is = [&](std::size_t i, std::string_view name, std::string_view other) {
    return found[i].name == name || found[i].name == other;
  };
  if (found.size() != 3 || found[0].name != "time" || !is(1, "lat", "latitude") ||
      !is(2, "lon", "longitude")) {
    throw NetcdfFault(in_quotes(variable.name) + " has the dimensions " +
                      dimensions_text(variable) + "; expected (time, lat, lon)");
  }
}

// Throws NetcdfFault if the values are packed or scaled: the numbers in the file would
// not be the physical values.
void expect_unpacked(const NetcdfInput& input, const NetcdfVariable& variable) {
  if (!variable.is_real) {
    throw NetcdfFault(in_quotes(variable.name) +
                      " holds integers; expected float or double");
  }
  struct Packing {
    const char* attribute;
    double none;
  };
  for (const auto& [attribute, none] :
       std::array{Packing{"scale_factor", 1}, Packing{"add_offset", 0}}) {
    for (const double number : input.numbers(variable, attribute)) {
      if (number != none) {
        throw NetcdfFault(in_quotes(variable.name) + " is packed: " + attribute +
                          " is " + number_text(number) +
                          "; expected the values themselves");
      }
    }
  }
}

const NetcdfVariable& find_coordinate(const NetcdfInput& input,
                                      const NetcdfDimension& dimension) {
  const auto& all = input.variables();
  const auto found = std::find_if(all.begin(), all.end(), [&](const auto& variable) {
    return variable.name == dimension.name && variable.dimensions.size() == 1 &&
           variable.dimensions.front().name == dimension.name;
  });
  if (found == all.end()) {
    throw NetcdfFault("there are no coordinates for the dimension " +
                      in_quotes(dimension.name) + "; expected a variable of that name");
  }
  return *found;
}

std::vector<double> coordinates(const NetcdfInput& input,
                                const NetcdfVariable& variable) {
  constexpr std::size_t kMax = 100'000;  // months; more than eight thousand years
  const std::size_t length = variable.dimensions.front().length;
  if (length > kMax) {
    throw NetcdfFault("the dimension " + in_quotes(variable.name) +
                      " has a length of " + std::to_string(length) +
                      "; expected at most " + std::to_string(kMax));
  }
  return input.read_all(variable);
}

// Returns the missing-value codes in single precision, like the values that they are
// compared with. No value equals a code that is out of the range of single precision.
std::vector<float> missing_values(const NetcdfInput& input,
                                  const NetcdfVariable& variable) {
  std::vector<double> codes = input.numbers(variable, "_FillValue");
  if (codes.empty()) {
    codes.push_back(variable.fill);
  }
  for (const double code : input.numbers(variable, "missing_value")) {
    codes.push_back(code);
  }
  std::vector<float> missing;
  for (const double code : codes) {
    const bool reached = std::abs(code) <= std::numeric_limits<float>::max();
    if (reached || !std::isfinite(code)) {
      missing.push_back(static_cast<float>(code));
    }
  }
  return missing;
}

}  // namespace

NetcdfLayout find_layout(const NetcdfInput& input, const std::string& name) {
  const auto [entry, variable] = find_variable(input, name);
  expect_dimensions(*variable);
  expect_unpacked(input, *variable);
  const NetcdfVariable& time = find_coordinate(input, variable->dimensions[0]);
  const NetcdfVariable& lat = find_coordinate(input, variable->dimensions[1]);
  const NetcdfVariable& lon = find_coordinate(input, variable->dimensions[2]);
  const DaysSince since(input.text(time, "units"), input.text(time, "calendar"));
  return {.entry = *entry,
          .variable = *variable,
          .form = {.rows = find_row_order(coordinates(input, lat)),
                   .first_column = find_first_column(coordinates(input, lon)),
                   .missing = missing_values(input, *variable)},
          .years = find_years(coordinates(input, time), since)};
}

}  // namespace veldmark::tersify
