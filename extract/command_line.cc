#include "extract/command_line.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <vector>

#include "catalogue/variable_name.h"
#include "extract/arguments.h"
#include "extract/option_rules.h"
#include "util/failure.h"
#include "util/in_quotes.h"
#include "util/without_folders.h"

namespace veldmark::extract {
namespace {

std::optional<std::int32_t> parse_integer_text(std::string_view text) {
  std::int32_t value{};
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value);
  return result.ec == std::errc() && result.ptr == end ? std::optional(value)
                                                       : std::nullopt;
}

std::int32_t parse_integer_option(std::string_view option, std::string_view text,
                                  std::int32_t least, std::int32_t most) {
  const std::optional<std::int32_t> value = parse_integer_text(text);
  if (!value || *value < least || *value > most) {
    throw UsageError(std::string(option) + " " + in_quotes(text) +
                     ": give a whole number from " + std::to_string(least) + " to " +
                     std::to_string(most));
  }
  return *value;
}

constexpr std::int32_t kMaxYear = 9999;

std::int32_t parse_year_option(std::string_view option, std::string_view text) {
  const std::optional<std::int32_t> year = parse_integer_text(text);
  if (!year || *year < 1 || *year > kMaxYear) {
    throw UsageError(std::string(option) + " " + in_quotes(text) +
                     ": give a year, as in " + std::string(option) + " 1961");
  }
  return *year;
}

Years parse_years(std::string_view text) {
  const std::size_t middle = text.find(':');
  const std::optional<std::int32_t> first = parse_integer_text(text.substr(0, middle));
  const std::optional<std::int32_t> last =
      middle == std::string_view::npos ? first
                                       : parse_integer_text(text.substr(middle + 1));
  if (!first || !last) {
    throw UsageError("--years " + in_quotes(text) +
                     ": give first and last year, as in --years 1961:1990");
  }
  if (*first > *last) {
    throw UsageError("--years " + std::string(text) +
                     ": the first year comes first; did you mean --years " +
                     std::to_string(*last) + ":" + std::to_string(*first) + "?");
  }
  return {.first = *first, .last = *last};
}

double parse_radius(std::string_view text) {
  const std::optional<double> radius = parse_degrees(text);  // a plain number
  if (!radius || *radius <= 0) {
    throw UsageError("--radius " + in_quotes(text) +
                     ": give a distance in kilometres, as in --radius 50");
  }
  return *radius;
}

// Returns the format that the ending of `output` stands for; csv for a name without
// an ending. Throws UsageError for any other ending: the file would not be what its
// name says.
Format format_of_ending(const std::string& output) {
  const std::string base(without_folders(output));
  const std::size_t dot = base.rfind('.');
  const std::string ending =
      dot == std::string::npos ? "" : lower_case(base.substr(dot));
  if (ending.size() <= 1 || ending == ".csv") {
    return Format::kCsv;
  }
  if (ending == ".nc") {
    return Format::kNetcdf;
  }
  const std::string fault = "--output " + in_quotes(output) + ": ";
  if (ending == ".tsf" || ending == ".xy") {
    const std::string stem = output.substr(0, output.size() - ending.size());
    throw UsageError(fault + "for " + stem + ".TSF and " + stem +
                     ".XY, give --format tsf -o " + stem);
  }
  throw UsageError(fault + "the ending " + base.substr(dot) +
                   " names no format; give --format csv, tsf or netcdf");
}

Format format_of(const Arguments& arguments) {
  const std::string& name = arguments.format;
  if (name.empty()) {
    return format_of_ending(arguments.output);
  }
  if (name == "csv") {
    return Format::kCsv;
  }
  if (name == "tsf") {
    return Format::kTsf;
  }
  if (name == "netcdf") {
    return Format::kNetcdf;
  }
  throw UsageError("--format " + in_quotes(name) +
                   ": the formats are csv, tsf and netcdf");
}

void set_place(const Arguments& arguments, Options& options) {
  if (!arguments.lat.empty() || !arguments.lon.empty()) {
    options.box.emplace();
    if (!arguments.lat.empty()) {
      set_latitudes(arguments.lat, *options.box);
    }
    if (!arguments.lon.empty()) {
      options.longitude_note = set_longitudes(arguments.lon, *options.box);
    }
  }
  if (!arguments.cell.empty()) {
    options.cell = parse_point(arguments.cell);
  }
  if (!arguments.sites.empty()) {
    options.sites = arguments.sites;
  }
  if (!arguments.radius.empty()) {
    options.radius_km = parse_radius(arguments.radius);
  }
}

void set_values(const Arguments& arguments, Options& options) {
  constexpr std::int32_t kMaxDeflate = 9;
  constexpr std::int32_t kMaxColumns = 720;
  if (!arguments.variable.empty()) {
    options.variable = arguments.variable;
  }
  if (!arguments.first_year.empty()) {
    options.first_year = parse_year_option("--first-year", arguments.first_year);
  }
  if (!arguments.years.empty()) {
    options.years = parse_years(arguments.years);
  }
  if (!arguments.every.empty()) {
    options.every = parse_integer_option("--every", arguments.every, 1, kMaxColumns);
  }
  if (!arguments.variance_test.empty()) {
    options.variance_test =
        parse_year_option("--variance-test", arguments.variance_test);
  }
  if (!arguments.output.empty()) {
    options.output = arguments.output;
  }
  if (!arguments.deflate.empty()) {
    options.deflate =
        parse_integer_option("--deflate", arguments.deflate, 0, kMaxDeflate);
  }
}

}  // namespace

Options parse_command_line(std::span<const std::string> arguments) {
  const Arguments given = read_arguments(arguments);
  Options options;
  if (given.help || given.version) {
    options.task = given.help ? Task::kShowHelp : Task::kShowVersion;
    return options;
  }
  options.task = given.cite ? Task::kCite : Task::kExtract;
  options.input = given.input;
  if (options.task == Task::kExtract) {
    if (options.input.empty()) {
      throw UsageError("the input file or the variable's name is missing");
    }
  }
  set_place(given, options);
  set_values(given, options);
  options.format = format_of(given);
  options.area_mean = given.area_mean;
  options.wide = given.wide;
  options.stored = given.stored;
  options.tsf_rule = given.tsf_rule;
  options.overwrite = given.overwrite;
  options.quiet = given.quiet;
  check_combinations(options, !given.deflate.empty());
  return options;
}

}  // namespace veldmark::extract
