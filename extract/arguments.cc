#include "extract/arguments.h"

#include <CLI/CLI.hpp>
#include <vector>

#include "util/failure.h"
#include "util/in_quotes.h"

namespace veldmark::extract {
namespace {

void declare_options(CLI::App& app, Arguments& arguments) {
  app.set_help_flag();  // --help is declared below
  const auto add_flag = [&app](const std::string& name, bool& given) {
    app.add_flag(name, given)->disable_flag_override();  // no --quiet=no
  };
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
  add_flag("--area-mean", arguments.area_mean);
  add_flag("--wide", arguments.wide);
  add_flag("--stored", arguments.stored);
  add_flag("--tsf-rule", arguments.tsf_rule);
  add_flag("--overwrite", arguments.overwrite);
  add_flag("--quiet", arguments.quiet);
  add_flag("--cite", arguments.cite);
  add_flag("--help", arguments.help);
  add_flag("--version", arguments.version);
}

// Returns the message for an option that is repeated, lacks its value, or has one but
// takes none. The parser's own text begins with the option's name; for the last of
// these three the name is without hyphens.
std::string option_fault(const std::string& parser_text) {
  const std::string name = parser_text.substr(0, parser_text.find_first_of(": "));
  if (parser_text.find("override") != std::string::npos) {
    return "--" + name + " takes no value";
  }
  const bool twice = parser_text.find("At Most") != std::string::npos ||
                     parser_text.find("at most") != std::string::npos;
  return name + (twice ? " is given more than once" : " needs a value");
}

// Returns the message for arguments that the parser could not assign.
std::string unknown_fault(const CLI::App& app) {
  for (const std::string& rest : app.remaining()) {
    if (rest.starts_with('-')) {
      return "unknown option " + in_quotes(rest);
    }
  }
  return "unexpected argument " + in_quotes(app.remaining().front());
}

}  // namespace

Arguments read_arguments(std::span<const std::string> words) {
  Arguments arguments;
  CLI::App app;
  declare_options(app, arguments);
  app.allow_extras();
  // CLI11 takes a list of words from its end.
  std::vector<std::string> reversed(words.rbegin(), words.rend());
  try {
    app.parse(reversed);
  } catch (const CLI::ParseError& error) {
    throw UsageError(option_fault(error.what()));
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

}  // namespace veldmark::extract
