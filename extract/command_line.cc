#include "extract/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <vector>

#include "util/failure.h"
#include "util/in_quotes.h"

namespace veldmark::extract {
namespace {

// The options as they were written, before their values are looked at.
struct Arguments {
  std::string input;
  std::string variable;
  std::string first_year;
  std::string lat;
  std::string lon;
  std::string cell;
  std::string sites;
  std::string radius;
  std::string years;
  std::string every;
  std::string variance_test;
  std::string output;
  std::string format;
  std::string deflate;
  bool area_mean = false;
  bool wide = false;
  bool stored = false;
  bool tsf_rule = false;
  bool overwrite = false;
  bool quiet = false;
  bool cite = false;
  bool help = false;
  bool version = false;
};

void declare_options(CLI::App& app, Arguments& arguments) {
  app.set_help_flag();  // --help is one of ours
  app.add_option("INPUT", arguments.input);
  app.add_option("--variable", arguments.variable);
  app.add_option("--first-year", arguments.first_year);
  app.add_option("--lat", arguments.lat);
  app.add_option("--lon", arguments.lon);
  app.add_option("--cell", arguments.cell);
  app.add_option("--sites", arguments.sites);
  app.add_option("--radius", arguments.radius);
  app.add_option("--years", arguments.years);
  app.add_option("--every", arguments.every);
  app.add_option("--variance-test", arguments.variance_test);
  app.add_option("-o,--output", arguments.output);
  app.add_option("--format", arguments.format);
  app.add_option("--deflate", arguments.deflate);
  app.add_flag("--area-mean", arguments.area_mean);
  app.add_flag("--wide", arguments.wide);
  app.add_flag("--stored", arguments.stored);
  app.add_flag("--tsf-rule", arguments.tsf_rule);
  app.add_flag("--overwrite", arguments.overwrite);
  app.add_flag("--quiet", arguments.quiet);
  app.add_flag("--cite", arguments.cite);
  app.add_flag("--help", arguments.help);
  app.add_flag("--version", arguments.version);
}

// What is wrong with an option that stands there twice or has no value. The parser's
// own text begins with the option's name.
std::string count_fault(const std::string& parser_text) {
  const std::string name = parser_text.substr(0, parser_text.find(':'));
  const bool twice = parser_text.find("At Most") != std::string::npos ||
                     parser_text.find("at most") != std::string::npos;
  return name + (twice ? " stands there more than once" : " needs a value");
}

// The arguments that the parser took for none of the options.
std::string unknown_fault(const CLI::App& app) {
  for (const std::string& rest : app.remaining()) {
    if (rest.starts_with('-')) {
      return "unknown option " + in_quotes(rest);
    }
  }
  return "unexpected argument " + in_quotes(app.remaining().front());
}

Arguments read_arguments(std::span<const std::string> words) {
  Arguments arguments;
  CLI::App app;
  declare_options(app, arguments);
  app.allow_extras();
  std::vector<std::string> reversed(words.rbegin(), words.rend());  // what it takes
  try {
    app.parse(reversed);
  } catch (const CLI::ArgumentMismatch& error) {
    throw UsageError(count_fault(error.what()));
  } catch (const CLI::ParseError& error) {
    throw UsageError(error.what());
  }
  if (!app.remaining().empty()) {
    throw UsageError(unknown_fault(app));
  }
  for (const CLI::Option* option : app.get_options()) {
    if (option->count() > 0 && option->results().front().empty()) {
      throw UsageError(option->get_name() + " needs a value");
    }
  }
  return arguments;
}

std::optional<std::int32_t> parse_whole(std::string_view text) {
  std::int32_t value{};
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value);
  return result.ec == std::errc() && result.ptr == end ? std::optional(value)
                                                       : std::nullopt;
}

std::int32_t whole_number(std::string_view option, std::string_view text,
                          std::int32_t least, std::int32_t most) {
  const std::optional<std::int32_t> value = parse_whole(text);
  if (!value || *value < least || *value > most) {
    throw UsageError(std::string(option) + " " + in_quotes(text) +
                     ": give a whole number from " + std::to_string(least) + " to " +
                     std::to_string(most));
  }
  return *value;
}

constexpr std::int32_t kMostYear = 9999;

std::int32_t year_of(std::string_view option, std::string_view text) {
  const std::optional<std::int32_t> year = parse_whole(text);
  if (!year || *year < 1 || *year > kMostYear) {
    throw UsageError(std::string(option) + " " + in_quotes(text) +
                     ": give a year, as in " + std::string(option) + " 1961");
  }
  return *year;
}

Years parse_years(std::string_view text) {
  const std::size_t middle = text.find(':');
  const std::optional<std::int32_t> first = parse_whole(text.substr(0, middle));
  const std::optional<std::int32_t> last =
      middle == std::string_view::npos ? first : parse_whole(text.substr(middle + 1));
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

double radius_of(std::string_view text) {
  const std::optional<double> radius = parse_degrees(text);  // a plain number
  if (!radius || *radius <= 0) {
    throw UsageError("--radius " + in_quotes(text) +
                     ": give a distance in kilometres, as in --radius 50");
  }
  return *radius;
}

Format format_of(const Arguments& arguments) {
  const std::string& name = arguments.format;
  if (name == "csv") {
    return Format::kCsv;
  }
  if (name == "tsf") {
    return Format::kTsf;
  }
  if (name == "netcdf" || (name.empty() && arguments.output.ends_with(".nc"))) {
    return Format::kNetcdf;
  }
  if (name.empty()) {
    return Format::kCsv;
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
    options.radius_km = radius_of(arguments.radius);
  }
}

void set_values(const Arguments& arguments, Options& options) {
  constexpr std::int32_t kMostDeflate = 9;
  constexpr std::int32_t kMostColumns = 720;
  if (!arguments.variable.empty()) {
    options.variable = arguments.variable;
  }
  if (!arguments.first_year.empty()) {
    options.first_year = year_of("--first-year", arguments.first_year);
  }
  if (!arguments.years.empty()) {
    options.years = parse_years(arguments.years);
  }
  if (!arguments.every.empty()) {
    options.every = whole_number("--every", arguments.every, 1, kMostColumns);
  }
  if (!arguments.variance_test.empty()) {
    options.variance_test = year_of("--variance-test", arguments.variance_test);
  }
  if (!arguments.output.empty()) {
    options.output = arguments.output;
  }
  if (!arguments.deflate.empty()) {
    options.deflate = whole_number("--deflate", arguments.deflate, 0, kMostDeflate);
  }
}

void refuse(bool wrong, const std::string& sentence) {
  if (wrong) {
    throw UsageError(sentence);
  }
}

void check_place(const Options& options) {
  refuse(options.box && options.cell, "--lat and --lon exclude --cell");
  refuse(options.box && options.sites, "--lat and --lon exclude --sites");
  refuse(options.cell && options.sites, "--cell excludes --sites");
  refuse(options.radius_km && !options.sites, "--radius goes with --sites");
  refuse(options.every > 1 && (options.cell || options.sites),
         "--every thins a box or the globe, not " +
             std::string(options.cell ? "--cell" : "--sites"));
  refuse(options.area_mean && options.sites,
         "--area-mean is the mean of a box; sites have series of their own");
}

void check_what_and_how(const Options& options, bool deflate_given) {
  const bool csv = options.format == Format::kCsv;
  refuse(options.area_mean && options.variance_test,
         "--area-mean excludes --variance-test");
  refuse(options.area_mean && !csv, "--area-mean is written as csv only");
  refuse(options.variance_test && !csv, "--variance-test is written as csv only");
  refuse(options.wide && !csv, "--wide goes with csv only");
  refuse(options.wide && options.area_mean,
         "--wide excludes --area-mean: each month has a count of cells beside it");
  refuse(options.wide && options.variance_test,
         "--wide excludes --variance-test: there is one line a cell");
  refuse(options.stored && !csv,
         "--stored goes with csv only: tsf and netcdf always hold the stored integers");
  refuse(options.stored && options.area_mean,
         "--stored excludes --area-mean: a mean is no stored integer");
  refuse(options.stored && options.variance_test,
         "--stored excludes --variance-test: the test is made in physical units");
  refuse(deflate_given && options.format != Format::kNetcdf,
         "--deflate goes with netcdf only");
  refuse(options.format != Format::kCsv && !options.output,
         "--output is needed: only csv is written to standard output");
  refuse(options.format == Format::kTsf && options.sites.has_value(),
         "--sites is written as csv or netcdf: tsf has no room for the sites");
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
    refuse(options.input.empty(), "the input file or the variable's name is missing");
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
  check_place(options);
  check_what_and_how(options, !given.deflate.empty());
  return options;
}

}  // namespace veldmark::extract
