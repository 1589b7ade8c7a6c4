#include "extract/option_rules.h"

#include <string>

#include "util/failure.h"

namespace veldmark::extract {
namespace {

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
  const bool tsf = options.format == Format::kTsf;
  refuse(options.area_mean && options.variance_test,
         "--area-mean excludes --variance-test");
  refuse(options.area_mean && tsf,
         "--area-mean is written as csv or netcdf: tsf holds series of cells");
  refuse(options.variance_test && tsf,
         "--variance-test is written as csv or netcdf: tsf holds series of cells");
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
  refuse(tsf && options.sites.has_value(),
         "--sites is written as csv or netcdf: tsf has no room for the sites");
}

}  // namespace

void check_combinations(const Options& options, bool deflate_given) {
  check_place(options);
  check_what_and_how(options, deflate_given);
}

}  // namespace veldmark::extract
