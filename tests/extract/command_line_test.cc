#include "extract/command_line.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "util/failure.h"

namespace veldmark::extract {
namespace {

using Words = std::vector<std::string>;

std::string fault_of(const Words& words) {
  try {
    parse_command_line(words);
  } catch (const UsageError& error) {
    return error.what();
  }
  return "";
}

TEST(CommandLine, ANameAloneMeansAllYearsOfTheGlobeAsCsv) {
  const Options options = parse_command_line(Words{"tmp"});
  EXPECT_EQ(options.task, Task::kExtract);
  EXPECT_EQ(options.input, "tmp");
  EXPECT_FALSE(options.box || options.cell || options.sites || options.years);
  EXPECT_EQ(options.every, 1);
  EXPECT_EQ(options.format, Format::kCsv);
  EXPECT_FALSE(options.output || options.overwrite || options.quiet || options.wide);
}

TEST(CommandLine, ReadsEveryOption) {
  const Options box = parse_command_line(
      Words{"tmp", "--variable", "pre", "--first-year", "1951", "--lat", "-10:10",
            "--lon=170:190", "--years", "1961:1990", "--every", "2", "--stored",
            "--wide", "--tsf-rule", "-o", "x.csv", "--overwrite", "--quiet"});
  EXPECT_EQ(box.variable, "pre");
  EXPECT_EQ(box.first_year, 1951);
  EXPECT_EQ(box.box->south, -10);
  EXPECT_EQ(box.box->west, 170);
  EXPECT_EQ(box.box->east, -170);
  EXPECT_EQ(box.longitude_note, "--lon 170:190 taken as 170:-170");
  EXPECT_EQ(box.years->first, 1961);
  EXPECT_EQ(box.years->last, 1990);
  EXPECT_EQ(box.every, 2);
  EXPECT_EQ(box.output, "x.csv");
  EXPECT_TRUE(box.stored && box.wide && box.tsf_rule && box.overwrite && box.quiet);

  const Options sites = parse_command_line(
      Words{"--sites", "p.csv", "--radius", "50", "--variance-test", "1950", "pre"});
  EXPECT_EQ(sites.sites, "p.csv");
  EXPECT_EQ(sites.radius_km, 50);
  EXPECT_EQ(sites.variance_test, 1950);
  EXPECT_EQ(sites.input, "pre");

  const Options cell =
      parse_command_line(Words{"tmp", "--cell", "-1.5,20", "--output", "x.nc",
                               "--deflate", "0", "--years", "1990"});
  EXPECT_EQ(cell.cell->latitude, -1.5);
  EXPECT_EQ(cell.format, Format::kNetcdf);
  EXPECT_EQ(cell.deflate, 0);
  EXPECT_EQ(cell.years->first, 1990);
  EXPECT_EQ(cell.years->last, 1990);
}

TEST(CommandLine, OneEdgeOfABoxMayBeLeftOut) {
  const Options options = parse_command_line(Words{"tmp", "--lat", "-23.5:23.5"});
  EXPECT_EQ(options.box->north, 23.5);
  EXPECT_EQ(options.box->west, -180);
  EXPECT_EQ(options.box->east, 180);
  const Options longitudes = parse_command_line(Words{"tmp", "--lon", "0:10"});
  EXPECT_EQ(longitudes.box->south, -90);
  EXPECT_EQ(longitudes.box->north, 90);
}

TEST(CommandLine, TheFormatFollowsTheEndingUnlessItIsNamed) {
  EXPECT_EQ(parse_command_line(Words{"tmp", "-o", "x.nc"}).format, Format::kNetcdf);
  EXPECT_EQ(parse_command_line(Words{"tmp", "-o", "x.NC"}).format, Format::kNetcdf);
  for (const char* name : {"x", "x.csv", "x.CSV", "a.nc/x", "x."}) {
    EXPECT_EQ(parse_command_line(Words{"tmp", "-o", name}).format, Format::kCsv);
  }
  EXPECT_EQ(parse_command_line(Words{"tmp", "-o", "x.nc", "--format", "csv"}).format,
            Format::kCsv);
  EXPECT_EQ(parse_command_line(Words{"tmp", "-o", "x", "--format", "tsf"}).format,
            Format::kTsf);
  EXPECT_EQ(parse_command_line(Words{"tmp", "-o", "x.txt", "--format", "csv"}).format,
            Format::kCsv);
  EXPECT_EQ(parse_command_line(Words{"tmp", "-o", "x.TSF", "--format", "csv"}).format,
            Format::kCsv);
}

TEST(CommandLine, AnEndingThatNamesNoFormatIsRefused) {
  const auto fault_of_output = [](const char* name) {
    return fault_of({"tmp", "-o", name});
  };
  for (const char* name : {"x.tsf", "x.TSF", "x.xy", "x.XY", "x.Xy"}) {
    EXPECT_EQ(fault_of_output(name),
              "--output '" + std::string(name) +
                  "': for x.TSF and x.XY, give --format tsf -o x");
  }
  EXPECT_EQ(fault_of_output("a.b/x.2.tsf"),
            "--output 'a.b/x.2.tsf': for a.b/x.2.TSF and a.b/x.2.XY, give --format tsf "
            "-o a.b/x.2");
  const std::string fault = " names no format; give --format csv, tsf or netcdf";
  EXPECT_EQ(fault_of_output("x.txt"), "--output 'x.txt': the ending .txt" + fault);
  EXPECT_EQ(fault_of_output("x.csv.gz"), "--output 'x.csv.gz': the ending .gz" + fault);
  EXPECT_EQ(fault_of_output("out/x.NC4"),
            "--output 'out/x.NC4': the ending .NC4" + fault);
}

TEST(CommandLine, HelpVersionAndCitationNeedNoInput) {
  EXPECT_EQ(parse_command_line(Words{"--help"}).task, Task::kShowHelp);
  EXPECT_EQ(parse_command_line(Words{"tmp", "--version"}).task, Task::kShowVersion);
  EXPECT_EQ(parse_command_line(Words{"--cite"}).task, Task::kCite);
  EXPECT_EQ(parse_command_line(Words{"--cite", "tmp"}).input, "tmp");
}

TEST(CommandLine, EveryMistakeHasItsSentence) {
  const std::vector<std::pair<Words, std::string>> mistakes{
      {{}, "the input file or the variable's name is missing"},
      {{"--lat", "1:2"}, "the input file or the variable's name is missing"},
      {{"tmp", "pre"}, "unexpected argument 'pre'"},
      {{"tmp", "--latitude", "1:2"}, "unknown option '--latitude'"},
      {{"tmp", "-q"}, "unknown option '-q'"},
      {{"tmp", "--lat"}, "--lat needs a value"},
      {{"tmp", "--lat="}, "--lat needs a value"},
      {{"tmp", "--output", ""}, "--output needs a value"},
      {{""}, "INPUT needs a value"},
      {{"tmp", "--lat", "1:2", "--lat", "1:2"}, "--lat is given more than once"},
      {{"tmp", "--radius", "10"}, "--radius goes with --sites"},
      {{"tmp", "--sites", "s", "--radius", "-1"},
       "--radius '-1': give a distance in kilometres, as in --radius 50"},
      {{"tmp", "--lat", "1:2", "--cell", "1,2"}, "--lat and --lon exclude --cell"},
      {{"tmp", "--lon", "1:2", "--sites", "s"}, "--lat and --lon exclude --sites"},
      {{"tmp", "--cell", "1,2", "--sites", "s"}, "--cell excludes --sites"},
      {{"tmp", "--every", "0"}, "--every '0': give a whole number from 1 to 720"},
      {{"tmp", "--every", "2x"}, "--every '2x': give a whole number from 1 to 720"},
      {{"tmp", "--every", "2", "--cell", "1,2"},
       "--every thins a box or the globe, not --cell"},
      {{"tmp", "--every", "2", "--sites", "s"},
       "--every thins a box or the globe, not --sites"},
      {{"tmp", "--area-mean", "--sites", "s"},
       "--area-mean is the mean of a box; sites have series of their own"},
      {{"tmp", "--area-mean", "--variance-test", "1950"},
       "--area-mean excludes --variance-test"},
      {{"tmp", "--years", "1990:1961"},
       "--years 1990:1961: the first year comes first; did you mean --years "
       "1961:1990?"},
      {{"tmp", "--years", "61-90"},
       "--years '61-90': give first and last year, as in --years 1961:1990"},
      {{"tmp", "--years", "1961:1990x"},
       "--years '1961:1990x': give first and last year, as in --years 1961:1990"},
      {{"tmp", "--years", ":1990"},
       "--years ':1990': give first and last year, as in --years 1961:1990"},
      {{"tmp", "--first-year", "10000"},
       "--first-year '10000': give a year, as in --first-year 1961"},
      {{"tmp", "--sites", "s", "--radius", "50km"},
       "--radius '50km': give a distance in kilometres, as in --radius 50"},
      {{"tmp", "--sites", "s", "--radius", "0"},
       "--radius '0': give a distance in kilometres, as in --radius 50"},
      {{"tmp", "--quiet=x"}, "--quiet takes no value"},
      {{"tmp", "--stored=no"}, "--stored takes no value"},
      {{"tmp", "--every", "721"}, "--every '721': give a whole number from 1 to 720"},
      {{"tmp", "--first-year", "x"},
       "--first-year 'x': give a year, as in --first-year 1961"},
      {{"tmp", "--variance-test", "0"},
       "--variance-test '0': give a year, as in --variance-test 1961"},
      {{"tmp", "--format", "xls"},
       "--format 'xls': the formats are csv, tsf and netcdf"},
      {{"tmp", "--format", "tsf"},
       "--output is needed: only csv is written to standard output"},
      {{"tmp", "--format", "tsf", "-o", "x", "--sites", "s"},
       "--sites is written as csv or netcdf: tsf has no room for the sites"},
      {{"tmp", "-o", "x", "--format", "tsf", "--area-mean"},
       "--area-mean is written as csv or netcdf: tsf holds series of cells"},
      {{"tmp", "-o", "x", "--format", "tsf", "--variance-test", "1950"},
       "--variance-test is written as csv or netcdf: tsf holds series of cells"},
      {{"tmp", "-o", "x.nc", "--wide"}, "--wide goes with csv only"},
      {{"tmp", "--area-mean", "--wide"},
       "--wide excludes --area-mean: each month has a count of cells beside it"},
      {{"tmp", "--variance-test", "1950", "--wide"},
       "--wide excludes --variance-test: there is one line a cell"},
      {{"tmp", "-o", "x.nc", "--stored"},
       "--stored goes with csv only: tsf and netcdf always hold the stored integers"},
      {{"tmp", "--stored", "--area-mean"},
       "--stored excludes --area-mean: a mean is no stored integer"},
      {{"tmp", "--stored", "--variance-test", "1950"},
       "--stored excludes --variance-test: the test is made in physical units"},
      {{"tmp", "--deflate", "1"}, "--deflate goes with netcdf only"},
      {{"tmp", "-o", "x.nc", "--deflate", "10"},
       "--deflate '10': give a whole number from 0 to 9"},
  };
  for (const auto& [words, sentence] : mistakes) {
    EXPECT_EQ(fault_of(words), sentence);
  }
}

}  // namespace
}  // namespace veldmark::extract
