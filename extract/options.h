// The options of a run, as given on the command line.

#ifndef VELDMARK_EXTRACT_OPTIONS_H_
#define VELDMARK_EXTRACT_OPTIONS_H_

#include <cstdint>
#include <optional>
#include <string>

#include "companion/years_in_name.h"
#include "extract/place.h"

namespace veldmark::extract {

enum class Task { kExtract, kCite, kShowHelp, kShowVersion };

enum class Format { kCsv, kTsf, kNetcdf };

using companion::Years;

// Returns "1901-2016".
std::string years_text(const Years& years);

// Values are checked as far as possible without the input file; the variable's name,
// and whether the file holds the years, are checked later.
struct Options {
  Task task = Task::kExtract;

  std::string input;  // a variable's short name or a file; can be empty with --cite
  std::optional<std::string> variable;
  std::optional<std::int32_t> first_year;  // of the file

  // At most one of the three; none means the globe.
  std::optional<Box> box;
  std::optional<Point> cell;
  std::optional<std::string> sites;  // name of the file
  std::optional<double> radius_km;
  std::string longitude_note;  // how --lon was converted; empty if it was not

  std::optional<Years> years;  // nullopt: all years
  std::int32_t every = 1;
  bool area_mean = false;
  std::optional<std::int32_t> variance_test;  // first year of the second period

  std::optional<std::string> output;  // nullopt: standard output
  Format format = Format::kCsv;
  bool wide = false;
  bool stored = false;
  bool tsf_rule = false;
  std::int32_t deflate = 1;
  bool overwrite = false;
  bool quiet = false;
};

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_OPTIONS_H_
