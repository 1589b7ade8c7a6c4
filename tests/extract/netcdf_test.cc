// netCDF files as ncdump shows them: their headers, and how values are stored.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "run_in_process.h"
#include "support/grid_text.h"
#include "support/temporary_folder.h"
#include "util/file_descriptor.h"

namespace veldmark::extract {
namespace {

using testing::run;
using veldmark::testing::file_content;
using veldmark::testing::GridText;
using veldmark::testing::TemporaryFolder;
using veldmark::testing::write_file;

using Words = std::vector<std::string>;

std::string shown_by_ncdump(const std::string& options) {
  EXPECT_EQ(std::system(("'" NCDUMP "' " + options + " x.nc > x.cdl").c_str()), 0);
  return file_content("x.cdl");
}

// The header without what differs between machines and libraries. NOW replaces the time
// in the history; citations are cut after their first words.
std::string description() {
  const std::regex time(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ)");
  const std::regex citation(R"((references = "(\w+ ){5}).*" ;)");
  const std::regex unwanted(
      "_Endianness|_NCProperties|_SuperblockVersion|_IsNetcdf4|^netcdf |^[{}]?$");
  std::istringstream lines(shown_by_ncdump("-hs"));
  std::string text;
  for (std::string line; std::getline(lines, line);) {
    if (!std::regex_search(line, unwanted)) {
      line = std::regex_replace(line, citation, "$1...\" ;");
      text += std::regex_replace(line, time, "NOW") + "\n";
    }
  }
  return text;
}

// The values of a variable, as ncdump shows them, on one line.
std::string values_of(const std::string& variable) {
  const std::string text = shown_by_ncdump("-v " + variable);
  const std::string begin = "\n " + variable + " =";
  const std::size_t place = text.find(begin, text.find("\ndata:")) + begin.size();
  const std::string values = text.substr(place, text.find(" ;\n", place) - place);
  return std::regex_replace(values, std::regex("^\\s+|\n\\s*"), "");
}

// Two years; three cells around 60.25 N, 139.75 W, and two beside the 180 degree
// meridian.
class Netcdf : public ::testing::Test {
 protected:
  static constexpr const char* kName = "cru_ts4.01.1901.1902.tmp.dat.new";

  Netcdf() {
    GridText grid(1902, 1, 360, -999);
    for (int month = 0; month < 24; ++month) {
      const auto set = [&](int row, int column, int value) {
        grid.set_value(1901 + month / 12, month % 12 + 1, row, column, value);
      };
      set(301, 81, month - 12);
      set(302, 82, 253);
      set(301, 720, 200 + month);
      set(301, 1, month);
    }
    grid.set_value(1901, 4, 301, 82, 77);
    write_file(kName, grid.text());
  }

  static void write(Words words) {
    words.insert(words.begin(), kName);
    words.insert(words.end(), {"-o", "x.nc", "--quiet"});
    ASSERT_EQ(run(words).status, 0);
  }

  TemporaryFolder folder_;
};

const std::string kTime = R"(	double time(time) ;
		time:standard_name = "time" ;
		time:long_name = "time" ;
		time:units = "days since 1900-01-01" ;
		time:calendar = "standard" ;
		time:axis = "T" ;
		time:bounds = "time_bnds" ;
		time:_Storage = "contiguous" ;
	double time_bnds(time, bnds) ;
		time_bnds:_Storage = "contiguous" ;
)";

const std::string kAxes = R"(	double lat(lat) ;
		lat:standard_name = "latitude" ;
		lat:long_name = "latitude" ;
		lat:units = "degrees_north" ;
		lat:bounds = "lat_bnds" ;
		lat:axis = "Y" ;
		lat:_Storage = "contiguous" ;
	double lat_bnds(lat, bnds) ;
		lat_bnds:_Storage = "contiguous" ;
	double lon(lon) ;
		lon:standard_name = "longitude" ;
		lon:long_name = "longitude" ;
		lon:units = "degrees_east" ;
		lon:bounds = "lon_bnds" ;
		lon:axis = "X" ;
		lon:_Storage = "contiguous" ;
	double lon_bnds(lon, bnds) ;
		lon_bnds:_Storage = "contiguous" ;
)";

const std::string kPlaces = R"(	double lat(site) ;
		lat:standard_name = "latitude" ;
		lat:long_name = "latitude" ;
		lat:units = "degrees_north" ;
		lat:_Storage = "contiguous" ;
	double lon(site) ;
		lon:standard_name = "longitude" ;
		lon:long_name = "longitude" ;
		lon:units = "degrees_east" ;
		lon:_Storage = "contiguous" ;
	double cell_lat(site) ;
		cell_lat:long_name = "latitude of the cell\'s centre" ;
		cell_lat:units = "degrees_north" ;
		cell_lat:coordinates = "lat lon" ;
		cell_lat:_Storage = "contiguous" ;
	double cell_lon(site) ;
		cell_lon:long_name = "longitude of the cell\'s centre" ;
		cell_lon:units = "degrees_east" ;
		cell_lon:coordinates = "lat lon" ;
		cell_lon:_Storage = "contiguous" ;
	double distance(site) ;
		distance:long_name = "distance of the cell\'s centre" ;
		distance:units = "km" ;
		distance:coordinates = "lat lon" ;
		distance:_Storage = "contiguous" ;
)";

const std::string kSource =
    R"(		:institution = "University of East Anglia Climatic Research Unit" ;
		:source = "cru_ts4.01.1901.1902.tmp.dat.new" ;
		:references = "University of East Anglia Climatic ..." ;
)";

// The variables of a variance test with a value for each cell or site.
std::string test_variables(const std::string& dimensions, const Words& attributes) {
  std::string text;
  const auto add = [&](const std::string& type, const std::string& name,
                       const std::string& fill, const std::string& long_name) {
    text += "\t" + type + " " + name + "(" + dimensions + ") ;\n";
    Words all{"_FillValue = " + fill, "long_name = \"" + long_name + "\"",
              "units = \"1\""};
    all.insert(all.end(), attributes.begin(), attributes.end());
    for (const std::string& attribute : all) {
      text += "\t\t" + name + ":" + attribute + " ;\n";
    }
  };
  const std::string real = "9.96921e+36f";
  const std::string count = "-2147483647";
  add("float", "f", real,
      "larger variance over the smaller, of 1901-1901 and 1902-1902");
  add("float", "probability", real,
      "two-sided probability of so large a ratio under equal variances");
  add("int", "n1", count, "number of values, 1901-1901");
  add("int", "n2", count, "number of values, 1902-1902");
  add("int", "adjusted_n1", count, "count adjusted for kurtosis, 1901-1901");
  add("int", "adjusted_n2", count, "count adjusted for kurtosis, 1902-1902");
  return text;
}

TEST_F(Netcdf, ALibraryThatCannotBeLoadedIsReported) {
  write_file(NETCDF_SONAME, "no library");
  const auto status_of = [](const std::string& arguments) {
    const int status = std::system(
        ("LD_LIBRARY_PATH=. '" VELDMARK_EXTRACT "' " + arguments + " 2> messages")
            .c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  };
  // Before the input is opened.
  EXPECT_EQ(status_of("none.tmp -o x.nc"), 1);
  EXPECT_EQ(file_content("messages"),
            "veldmark-extract: cannot load the netCDF library: ./" NETCDF_SONAME
            ": file too short\n");
  EXPECT_EQ(status_of(std::string(kName) + " -o x.csv"), 0);

  // One that is not netCDF.
  std::filesystem::remove(NETCDF_SONAME);
  std::filesystem::copy_file(NO_FUNCTIONS, NETCDF_SONAME);
  EXPECT_EQ(status_of(std::string(kName) + " -o x.nc"), 1);
  EXPECT_EQ(file_content("messages"),
            "veldmark-extract: cannot load the netCDF library: ./" NETCDF_SONAME
            ": undefined symbol: nc_create\n");
  EXPECT_FALSE(std::filesystem::exists("x.nc"));
}

TEST_F(Netcdf, AGridIsDescribed) {
  write({"--lat", "60:61", "--lon", "179:181", "--years", "1902"});
  EXPECT_EQ(
      description(),
      R"(dimensions:
	bnds = 2 ;
	time = 12 ;
	lat = 2 ;
	lon = 4 ;
variables:
)" + kTime +
          kAxes + R"(	short tmp(time, lat, lon) ;
		tmp:_FillValue = -999s ;
		tmp:standard_name = "air_temperature" ;
		tmp:long_name = "mean temperature" ;
		tmp:units = "degC" ;
		tmp:cell_methods = "time: mean" ;
		tmp:scale_factor = 0.1 ;
		tmp:_Storage = "chunked" ;
		tmp:_ChunkSizes = 12, 2, 4 ;
		tmp:_Shuffle = "true" ;
		tmp:_DeflateLevel = 1 ;
// global attributes:
		:Conventions = "CF-1.8" ;
		:title = "mean temperature, 1902-1902, from CRU TS 4.01, cru_ts4.01.1901.1902.tmp.dat.new" ;
)" + kSource +
          R"(		:history = "NOW veldmark-extract cru_ts4.01.1901.1902.tmp.dat.new --lat 60:61 --lon 179:181 --years 1902 -o x.nc --quiet" ;
		:_Format = "netCDF-4" ;
)");
}

TEST_F(Netcdf, AGridsCoordinatesHaveTheirBounds) {
  write({"--lat", "60:61", "--lon", "179:181", "--years", "1902"});
  EXPECT_EQ(values_of("lat"), "60.25, 60.75");
  EXPECT_EQ(values_of("lat_bnds"), "60, 60.5,60.5, 61");
  EXPECT_EQ(values_of("lon"), "179.25, 179.75, 180.25, 180.75");
  EXPECT_EQ(values_of("lon_bnds"), "179, 179.5,179.5, 180,180, 180.5,180.5, 181");
  EXPECT_EQ(values_of("time"),
            "745, 775, 804, 835, 865, 896, 926, 957, 988, 1018, 1049, 1079");
  EXPECT_EQ(values_of("time_bnds"),
            "730, 761,761, 789,789, 820,820, 850,850, 881,881, 911,911, 942,942, 973,"
            "973, 1003,1003, 1034,1034, 1064,1064, 1095");
  const std::string values = values_of("tmp");
  EXPECT_EQ(values.substr(0, 42), "_, 212, 12, _,_, _, _, _,_, 213, 13, _,_, ");
}

TEST_F(Netcdf, AnAreaMeanIsDescribed) {
  write({"--lat", "60:61", "--lon", "179:181", "--years", "1902", "--area-mean"});
  EXPECT_EQ(
      description(),
      R"(dimensions:
	bnds = 2 ;
	time = 12 ;
variables:
)" + kTime +
          R"(	double lat ;
		lat:standard_name = "latitude" ;
		lat:long_name = "latitude" ;
		lat:units = "degrees_north" ;
		lat:bounds = "lat_bnds" ;
		lat:_Storage = "contiguous" ;
	double lat_bnds(bnds) ;
		lat_bnds:_Storage = "contiguous" ;
	double lon ;
		lon:standard_name = "longitude" ;
		lon:long_name = "longitude" ;
		lon:units = "degrees_east" ;
		lon:bounds = "lon_bnds" ;
		lon:_Storage = "contiguous" ;
	double lon_bnds(bnds) ;
		lon_bnds:_Storage = "contiguous" ;
	double tmp(time) ;
		tmp:_FillValue = 9.96920996838687e+36 ;
		tmp:standard_name = "air_temperature" ;
		tmp:long_name = "area mean of mean temperature" ;
		tmp:units = "degC" ;
		tmp:cell_methods = "time: mean area: mean" ;
		tmp:comment = "weighted with the cosine of latitude, over the cells that have data in the month" ;
		tmp:coordinates = "lat lon" ;
		tmp:ancillary_variables = "cells" ;
		tmp:_Storage = "chunked" ;
		tmp:_ChunkSizes = 12 ;
		tmp:_Shuffle = "true" ;
		tmp:_DeflateLevel = 1 ;
	int cells(time) ;
		cells:long_name = "number of cells with data" ;
		cells:units = "1" ;
		cells:coordinates = "lat lon" ;
		cells:_Storage = "chunked" ;
		cells:_ChunkSizes = 12 ;
		cells:_Shuffle = "true" ;
		cells:_DeflateLevel = 1 ;
// global attributes:
		:Conventions = "CF-1.8" ;
		:title = "area mean of mean temperature, 1902-1902, from CRU TS 4.01, cru_ts4.01.1901.1902.tmp.dat.new" ;
)" + kSource +
          R"(		:history = "NOW veldmark-extract cru_ts4.01.1901.1902.tmp.dat.new --lat 60:61 --lon 179:181 --years 1902 --area-mean -o x.nc --quiet" ;
		:_Format = "netCDF-4" ;
)");
}

TEST_F(Netcdf, AnAreaMeansExtentHasItsBounds) {
  write({"--lat", "60:61", "--lon", "179:181", "--years", "1902", "--area-mean"});
  EXPECT_EQ(values_of("lat"), "60.5");
  EXPECT_EQ(values_of("lat_bnds"), "60, 61");
  EXPECT_EQ(values_of("lon"), "180");
  EXPECT_EQ(values_of("lon_bnds"), "179, 181");
  EXPECT_EQ(values_of("time").substr(0, 13), "745, 775, 804");
}

TEST_F(Netcdf, SitesAreDescribed) {
  write_file("s.csv",
             "name,lat,lon,my note\nA,60.3,-139.7,\"a, b\"\nSea,60.3,-138.6,\n"
             "B,60.9,-139.3,x\n");
  write({"--sites", "s.csv", "--years", "1901", "--deflate", "0"});
  EXPECT_EQ(
      description(),
      R"(dimensions:
	bnds = 2 ;
	time = 12 ;
	site = 2 ;
variables:
)" + kTime +
          R"(	int site(site) ;
		site:long_name = "number of the site in its table" ;
		site:cf_role = "timeseries_id" ;
		site:_Storage = "contiguous" ;
)" + kPlaces +
          R"(	string site_name(site) ;
		site_name:long_name = "name" ;
		site_name:_Storage = "contiguous" ;
	string site_lat_2(site) ;
		site_lat_2:long_name = "lat" ;
		site_lat_2:_Storage = "contiguous" ;
	string site_lon_3(site) ;
		site_lon_3:long_name = "lon" ;
		site_lon_3:_Storage = "contiguous" ;
	string site_my_note_4(site) ;
		site_my_note_4:long_name = "my note" ;
		site_my_note_4:_Storage = "contiguous" ;
	short tmp(site, time) ;
		tmp:_FillValue = -999s ;
		tmp:standard_name = "air_temperature" ;
		tmp:long_name = "mean temperature" ;
		tmp:units = "degC" ;
		tmp:cell_methods = "time: mean" ;
		tmp:scale_factor = 0.1 ;
		tmp:coordinates = "lat lon" ;
		tmp:_Storage = "chunked" ;
		tmp:_ChunkSizes = 1, 12 ;
// global attributes:
		:featureType = "timeSeries" ;
		:Conventions = "CF-1.8" ;
		:title = "mean temperature, 1901-1901, from CRU TS 4.01, cru_ts4.01.1901.1902.tmp.dat.new" ;
)" + kSource +
          R"(		:history = "NOW veldmark-extract cru_ts4.01.1901.1902.tmp.dat.new --sites s.csv --years 1901 --deflate 0 -o x.nc --quiet" ;
		:_Format = "netCDF-4" ;
)");
  EXPECT_EQ(values_of("time"),
            "380, 410, 439, 470, 500, 531, 561, 592, 623, 653, 684, 714");
  EXPECT_EQ(values_of("site"), "1, 3");
  EXPECT_EQ(values_of("lat"), "60.3, 60.9");
  EXPECT_EQ(values_of("lon"), "-139.7, -139.3");
  EXPECT_EQ(values_of("cell_lat"), "60.25, 60.75");
  EXPECT_EQ(values_of("cell_lon"), "-139.75, -139.25");
  EXPECT_EQ(values_of("distance").substr(0, 4), "6.20");
  EXPECT_EQ(values_of("site_name"), R"("A", "B")");
  EXPECT_EQ(values_of("site_my_note_4"), R"("a, b", "x")");
  EXPECT_EQ(values_of("tmp"),
            "-12, -11, -10, -9, -8, -7, -6, -5, -4, -3, -2, -1,"
            "253, 253, 253, 253, 253, 253, 253, 253, 253, 253, 253, 253");
}

TEST_F(Netcdf, VarianceTestsOfAGridAreDescribed) {
  write({"--lat", "60:61", "--lon", "179:181", "--variance-test", "1902"});
  EXPECT_EQ(
      description(),
      R"(dimensions:
	bnds = 2 ;
	lat = 2 ;
	lon = 4 ;
variables:
)" + kAxes +
          test_variables("lat, lon", {"_Storage = \"chunked\"", "_ChunkSizes = 2, 4",
                                      "_Shuffle = \"true\"", "_DeflateLevel = 1"}) +
          R"(// global attributes:
		:Conventions = "CF-1.8" ;
		:title = "variance test of mean temperature, 1901-1902, from CRU TS 4.01, cru_ts4.01.1901.1902.tmp.dat.new" ;
)" + kSource +
          R"(		:history = "NOW veldmark-extract cru_ts4.01.1901.1902.tmp.dat.new --lat 60:61 --lon 179:181 --variance-test 1902 -o x.nc --quiet" ;
		:_Format = "netCDF-4" ;
)");
}

TEST_F(Netcdf, VarianceTestsOfSitesAreDescribed) {
  write_file("s.csv", "lat,lon\n60.3,-139.7\n60.9,-139.3\n");
  write({"--sites", "s.csv", "--variance-test", "1902"});
  EXPECT_EQ(
      description(),
      R"(dimensions:
	site = 2 ;
variables:
	int site(site) ;
		site:long_name = "number of the site in its table" ;
		site:_Storage = "contiguous" ;
)" + kPlaces +
          R"(	string site_lat_1(site) ;
		site_lat_1:long_name = "lat" ;
		site_lat_1:_Storage = "contiguous" ;
	string site_lon_2(site) ;
		site_lon_2:long_name = "lon" ;
		site_lon_2:_Storage = "contiguous" ;
)" +
          test_variables(
              "site", {"coordinates = \"lat lon\"", "_Storage = \"chunked\"",
                       "_ChunkSizes = 2", "_Shuffle = \"true\"", "_DeflateLevel = 1"}) +
          R"(// global attributes:
		:Conventions = "CF-1.8" ;
		:title = "variance test of mean temperature, 1901-1902, from CRU TS 4.01, cru_ts4.01.1901.1902.tmp.dat.new" ;
)" + kSource +
          R"(		:history = "NOW veldmark-extract cru_ts4.01.1901.1902.tmp.dat.new --sites s.csv --variance-test 1902 -o x.nc --quiet" ;
		:_Format = "netCDF-4" ;
)");
}

TEST_F(Netcdf, TheHistoryBeginsWithTheTimeInUtc) {
  const std::time_t before = std::time(nullptr);
  write({"--cell", "60.3,-139.7"});
  const std::time_t after = std::time(nullptr);
  const std::string text = shown_by_ncdump("-h");
  const std::string begin = ":history = \"";
  std::tm utc{};
  ASSERT_NE(::strptime(text.c_str() + text.find(begin) + begin.size(),
                       "%Y-%m-%dT%H:%M:%SZ veldmark-extract", &utc),
            nullptr);
  EXPECT_GE(::timegm(&utc), before);
  EXPECT_LE(::timegm(&utc), after);
}

TEST_F(Netcdf, TheDroughtIndexHasNoInstitution) {
  std::filesystem::create_directory("a folder");
  std::filesystem::rename(kName, "a folder/scPDSI.x");
  ASSERT_EQ(run({"a folder/scPDSI.x", "--first-year", "1901", "--cell", "60.3,-139.6",
                 "-o", "x*.nc"})
                .status,
            0);
  std::filesystem::rename("x*.nc", "x.nc");
  const std::string text = description();
  EXPECT_EQ(text.find("institution"), std::string::npos);
  EXPECT_NE(text.find(":source = \"scPDSI.x\" ;\n"), std::string::npos);
  EXPECT_NE(
      text.find(":history = \"NOW veldmark-extract \\'a folder/scPDSI.x\\' --first"),
      std::string::npos);
  EXPECT_NE(text.find(" -o \\'x*.nc\\'\" ;\n"), std::string::npos);
}

// More months, rows and columns than a chunk has. The file is sparse: only the lines of
// the southernmost rows are written. Values count up to a prime, so that no two lines
// or months are the same.
TEST(NetcdfChunks, EveryValueIsInItsPlace) {
  constexpr int kMonths = 6 * 12;
  constexpr int kRows = 61;
  constexpr int kColumns = 61;
  constexpr int kValues = 30011;
  const TemporaryFolder folder;
  {
    const FileDescriptor file("g.1901.1906.tmp.new", O_RDWR | O_CREAT);
    ASSERT_EQ(::ftruncate(file.get(), off_t{kMonths} * 360 * 3601), 0);
    int value = 0;
    for (int month = 0; month < kMonths; ++month) {
      std::string lines = "\n";
      for (int row = 0; row < kRows; ++row) {
        std::string line;
        for (int column = 0; column < 720; ++column) {
          std::string digits = 360 <= column && column < 360 + kColumns
                                   ? std::to_string(value++ % kValues)
                                   : "-999";
          line += std::string(5 - digits.size(), ' ') + digits;
        }
        lines += line + "\n";
      }
      const std::size_t skipped = month == 0 ? 1 : 0;
      const off_t place = off_t{month} * 360 * 3601 - 1;
      ASSERT_GT(::pwrite(file.get(), lines.data() + skipped, lines.size() - skipped,
                         place + static_cast<off_t>(skipped)),
                0);
    }
  }
  ASSERT_EQ(run({"g.1901.1906.tmp.new", "--lat", "-90:-59.5", "--lon", "0:30.5", "-o",
                 "x.nc"})
                .status,
            0);
  EXPECT_NE(description().find("tmp:_ChunkSizes = 60, 60, 60 ;"), std::string::npos);
  std::istringstream values(values_of("tmp"));
  std::string value;
  for (int i = 0; i < kMonths * kRows * kColumns; ++i) {
    std::getline(values, value, ',');
    ASSERT_EQ(std::stoi(value), i % kValues);
  }
  EXPECT_FALSE(std::getline(values, value, ','));

  // A single month is left for the last chunks.
  ASSERT_EQ(run({"g.1901.1906.tmp.new", "--lat", "-90:-64.5", "--lon", "0:29.5", "-o",
                 "x.nc", "--overwrite"})
                .status,
            0);
  EXPECT_NE(description().find("tmp:_ChunkSizes = 71, 51, 59 ;"), std::string::npos);
  std::istringstream fewer(values_of("tmp"));
  for (int month = 0; month < kMonths; ++month) {
    for (int row = 0; row < 51; ++row) {
      for (int column = 0; column < 59; ++column) {
        std::getline(fewer, value, ',');
        ASSERT_EQ(std::stoi(value),
                  ((month * kRows + row) * kColumns + column) % kValues);
      }
    }
  }
  EXPECT_FALSE(std::getline(fewer, value, ','));
}

}  // namespace
}  // namespace veldmark::extract
