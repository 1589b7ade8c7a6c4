// The words of the command line, sorted to their options.

#ifndef VELDMARK_EXTRACT_ARGUMENTS_H_
#define VELDMARK_EXTRACT_ARGUMENTS_H_

#include <span>
#include <string>

namespace veldmark::extract {

// The options as they were written, before their values are looked at. Empty texts were
// not given.
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

// Sorts the words. Throws UsageError for an unknown option, one that stands there twice
// or has no value, and for a second input.
Arguments read_arguments(std::span<const std::string> words);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_ARGUMENTS_H_
