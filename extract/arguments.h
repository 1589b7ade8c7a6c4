// Splits the command line into options and their values.

#ifndef VELDMARK_EXTRACT_ARGUMENTS_H_
#define VELDMARK_EXTRACT_ARGUMENTS_H_

#include <span>
#include <string>

namespace veldmark::extract {

// The options with their values as text, not yet parsed. An empty text means that the
// option was not given.
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

// Returns the options of the command line. Throws UsageError for an unknown option, one
// that is repeated or lacks its value, and for a second input.
Arguments read_arguments(std::span<const std::string> words);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_ARGUMENTS_H_
