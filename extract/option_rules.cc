#include "extract/option_rules.h"

#include <string>

#include "util/failure.h"

namespace veldmark::extract {
namespace {

void refuse_if(bool condition, const std::string& message) {
  if (condition) {
    throw UsageError(message);
  }
}

void check_place(const Options& options) {
  refuse_if(options.box && options.cell, "--lat and --lon exclude --cell");
  refuse_if(options.box && options.sites, "--lat and --lon exclude --sites");
  refuse_if(options.cell && options.sites, "--cell excludes --sites");
  refuse_if(options.radius_km && !options.sites, "--radius goes with --sites");
  refuse_if(options.every > 1 && (options.cell || options.sites),
            "--every thins a box or the globe, not " +
                std::string(options.cell ? "--cell" : "--sites"));
  refuse_if(options.area_mean && options.sites,
            "--area-mean is the mean of a box; sites have series of their own");
}

void check_what_and_how(const Options& options, bool deflate_given) {
  const bool csv = options.format == Format::kCsv;
  const bool tsf = options.format == Format::kTsf;
  refuse_if(options.area_mean && options.variance_test,
            "--area-mean excludes --variance-test");
  refuse_if(options.area_mean && tsf,
            "--area-mean is written as csv or netcdf: tsf holds series of cells");
  refuse_if(options.variance_test && tsf,
            "--variance-test is written as csv or netcdf: tsf holds series of cells");
  refuse_if(options.wide && !csv, "--wide goes with csv only");
  refuse_if(options.wide && options.area_mean,
            "--wide excludes --area-mean: each month has a count of cells beside it");
  refuse_if(options.wide && options.variance_test,
            "--wide excludes --variance-test: there is one line a cell");
  refuse_if(
      options.stored && !csv,
      "--stored goes with csv only: tsf and netcdf always hold the stored integers");
  refuse_if(options.stored && options.area_mean,
            "--stored excludes --area-mean: a mean is no stored integer");
  refuse_if(options.stored && options.variance_test,
            "--stored excludes --variance-test: the test is made in physical units");
  refuse_if(deflate_given && options.format != Format::kNetcdf,
            "--deflate goes with netcdf only");
  refuse_if(options.format != Format::kCsv && !options.output,
            "--output is needed: only csv is written to standard output");
  refuse_if(tsf && options.sites.has_value(),
            "--sites is written as csv or netcdf: tsf has no room for the sites");
}

}  // namespace

void check_combinations(const Options& options, bool deflate_given) {
  check_place(options);
  check_what_and_how(options, deflate_given);
}

}  // namespace veldmark::extract
