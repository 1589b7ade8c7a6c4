// The whole program in the test's own process, on generated grid files.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <regex>
#include <string>
#include <vector>

#include "run_in_process.h"
#include "support/grid_text.h"
#include "support/temporary_folder.h"
#include "util/file_descriptor.h"

namespace veldmark::extract {
namespace {

using testing::Outcome;
using testing::run;
using veldmark::testing::file_content;
using veldmark::testing::GridText;
using veldmark::testing::TemporaryFolder;
using veldmark::testing::write_file;

std::string quoted(const std::string& name) { return "'" + name + "'"; }

// Runs with the output x.csv and returns its content.
std::string csv_of(std::vector<std::string> arguments) {
  arguments.insert(arguments.end(), {"-o", "x.csv", "--overwrite", "--quiet"});
  const Outcome outcome = run(arguments);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.messages, "");
  return file_content("x.csv");
}

void expect_failure(const std::vector<std::string>& arguments, int status,
                    const std::string& message) {
  std::vector<std::string> words = arguments;
  words.insert(words.end(), {"-o", "none.csv"});
  const Outcome outcome = run(words);
  EXPECT_EQ(outcome.status, status);
  EXPECT_EQ(outcome.messages,
            "veldmark-extract: " + message + "\n" +
                (status == 2 ? "Try 'veldmark-extract --help' for more "
                               "information.\n"
                             : ""));
  EXPECT_FALSE(std::filesystem::exists("none.csv"));
  EXPECT_FALSE(std::filesystem::exists("none.csv.part"));
}

// Two years; three cells around 60.25 N, 139.75 W and one at 60.25 N, 179.75 E.
class Extract : public ::testing::Test {
 protected:
  static constexpr int kRow = 301;
  static constexpr const char* kName = "cru_ts4.01.1901.1902.tmp.dat.new";

  Extract() : grid_(1902, 1, 360, -999) {
    for (int month = 0; month < 24; ++month) {
      set(month, kRow, 81, month - 12);
      set(month, kRow, 720, 200 + month);
      set(month, kRow + 1, 82, 253);
    }
    set(3, kRow, 82, 77);  // in April 1901 alone
  }

  void set(int month, int row, int column, int value) {
    grid_.set_value(1901 + month / 12, month % 12 + 1, row, column, value);
  }

  void write_grid() { write_file(kName, grid_.text()); }

  TemporaryFolder folder_;
  GridText grid_;
};

TEST_F(Extract, WritesALineAMonth) {
  write_grid();
  std::string expected = "lat,lon,year,month,value\n";
  const std::vector<std::string> values{"-1.2", "-1.1", "-1.0", "-0.9", "-0.8", "-0.7",
                                        "-0.6", "-0.5", "-0.4", "-0.3", "-0.2", "-0.1"};
  for (int month = 0; month < 12; ++month) {
    expected += "60.25,-139.75,1901," + std::to_string(month + 1) + "," +
                values.at(month) + "\n";
  }
  EXPECT_EQ(csv_of({kName, "--cell", "60.3,-139.6", "--years", "1901"}), expected);
}

TEST_F(Extract, WritesALineAYear) {
  write_grid();
  EXPECT_EQ(csv_of({kName, "--lat", "60:60.5", "--lon", "220:221", "--wide"}),
            "lat,lon,year,jan,feb,mar,apr,may,jun,jul,aug,sep,oct,nov,dec\n"
            "60.25,-139.75,1901,-1.2,-1.1,-1.0,-0.9,-0.8,-0.7,-0.6,-0.5,-0.4,-0.3,-0.2,"
            "-0.1\n"
            "60.25,-139.75,1902,0.0,0.1,0.2,0.3,0.4,0.5,0.6,0.7,0.8,0.9,1.0,1.1\n"
            "60.25,-139.25,1901,,,,7.7,,,,,,,,\n"
            "60.25,-139.25,1902,,,,,,,,,,,,\n");
}

TEST_F(Extract, TsfRuleLooksAtTheFirstMonthOnly) {
  write_grid();
  EXPECT_EQ(csv_of({kName, "--cell", "60.3,-139.6", "--wide", "--stored", "--tsf-rule",
                    "--years", "1901"}),
            "lat,lon,year,jan,feb,mar,apr,may,jun,jul,aug,sep,oct,nov,dec\n"
            "60.25,-139.75,1901,-12,-11,-10,-9,-8,-7,-6,-5,-4,-3,-2,-1\n");
  expect_failure({kName, "--cell", "60.3,-139.1", "--tsf-rule"}, 3,
                 "the cell at 60.25, -139.25 has no data; --sites with --radius finds "
                 "the nearest that has");
}

TEST_F(Extract, CellsOfABoxAcrossTheMeridianRunFromWestToEast) {
  for (int month = 0; month < 24; ++month) {
    set(month, kRow, 1, 1);
  }
  write_grid();
  EXPECT_EQ(csv_of({kName, "--lat", "60:60.5", "--lon", "179:-179", "--years", "1902",
                    "--wide", "--stored"}),
            "lat,lon,year,jan,feb,mar,apr,may,jun,jul,aug,sep,oct,nov,dec\n"
            "60.25,179.75,1902,212,213,214,215,216,217,218,219,220,221,222,223\n"
            "60.25,-179.75,1902,1,1,1,1,1,1,1,1,1,1,1,1\n");
}

TEST_F(Extract, AreaMeanHasTheNumberOfCells) {
  write_grid();
  const std::string csv = csv_of({kName, "--lat", "60:60.5", "--lon", "-140:-139",
                                  "--years", "1901", "--area-mean"});
  EXPECT_EQ(csv.substr(0, csv.find("1901,5")),
            "year,month,value,cells\n1901,1,-1.200,1\n1901,2,-1.100,1\n"
            "1901,3,-1.000,1\n1901,4,3.400,2\n");
}

TEST_F(Extract, SitesKeepTheirColumnsAndAddTheCell) {
  write_grid();
  write_file(
      "s.csv",
      "plot,lat,lon,note\nA,60.3,-139.7,\"a, b\"\nSea,60.3,-138.6,\nB,60.9,-139.3,\n");
  const Outcome outcome = run({kName, "--sites", "s.csv", "--years", "1901", "--wide",
                               "--stored", "-o", "y.csv", "--quiet"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(
      outcome.messages,
      "veldmark-extract: site 2 (60.3, -138.6) is left out: its cell has no data; "
      "--radius allows the nearest that has\n");
  const std::string heading =
      "plot,lat,lon,note,cell_lat,cell_lon,distance_km,year,"
      "jan,feb,mar,apr,may,jun,jul,aug,sep,oct,nov,dec\n";
  const std::string a =
      "A,60.3,-139.7,\"a, "
      "b\",60.25,-139.75,6.2,1901,-12,-11,-10,-9,-8,-7,-6,-5,-4,-3,-2,"
      "-1\n";
  const std::string b =
      "B,60.9,-139.3,,60.75,-139.25,16.9,1901,253,253,253,253,253,253,253,253,253,253,"
      "253,"
      "253\n";
  EXPECT_EQ(file_content("y.csv"), heading + a + b);

  EXPECT_EQ(
      csv_of({kName, "--sites", "s.csv", "--years", "1901", "--wide", "--stored",
              "--radius", "50"}),
      heading + a + "Sea,60.3,-138.6,,60.25,-139.25,36.3,1901,,,,77,,,,,,,,\n" + b);
}

TEST_F(Extract, ASpreadsheetsTableGivesTheSame) {
  write_grid();
  write_file("plain.csv", "name,lat,lon,note\nA,60.3,-139.7,\"x, \"\"y\"\"\"\n");
  const std::string plain =
      csv_of({kName, "--sites", "plain.csv", "--years", "1901", "--wide", "--stored"});
  EXPECT_EQ(plain,
            "name,lat,lon,note,cell_lat,cell_lon,distance_km,year,"
            "jan,feb,mar,apr,may,jun,jul,aug,sep,oct,nov,dec\n"
            "A,60.3,-139.7,\"x, \"\"y\"\"\",60.25,-139.75,6.2,1901,"
            "-12,-11,-10,-9,-8,-7,-6,-5,-4,-3,-2,-1\n");
  write_file("sheet.csv",
             "\xEF\xBB\xBF\"name\",\"lat\",\"lon\",\"note\"\r\n"
             "\"A\",\"60.3\",\"-139.7\",\"x, \"\"y\"\"\"\r\n");
  EXPECT_EQ(
      csv_of({kName, "--sites", "sheet.csv", "--years", "1901", "--wide", "--stored"}),
      plain);
}

// CellOf in place_test.cc tests which point belongs to which cell. Here the points come
// from a table and from --cell.
TEST_F(Extract, PointsOnEdgesAndPolesBelongToTheCellNorthAndEast) {
  for (int month = 0; month < 24; ++month) {
    set(month, 1, 1, 1);      // 89.75 S, 179.75 W
    set(month, 360, 1, 2);    // 89.75 N, 179.75 W
    set(month, 181, 361, 3);  // 0.25 N, 0.25 E
    set(month, 180, 360, 4);  // 0.25 S, 0.25 W
  }
  write_grid();
  struct Case {
    const char* lat;
    const char* lon;
    const char* cell;
  };
  const std::vector<Case> cases{{"60.25", "-139.75", "60.25,-139.75"},
                                {"60", "-140", "60.25,-139.75"},
                                {"60.5", "-139.5", "60.75,-139.25"},
                                {"60.5", "-139.2", "60.75,-139.25"},
                                {"60.9", "220.5", "60.75,-139.25"},
                                {"90", "180", "89.75,-179.75"},
                                {"90", "-180", "89.75,-179.75"},
                                {"-90", "-180", "-89.75,-179.75"},
                                {"-90", "180", "-89.75,-179.75"},
                                {"0", "0", "0.25,0.25"},
                                {"0", "360", "0.25,0.25"},
                                {"-0.0001", "-0.0001", "-0.25,-0.25"}};
  for (const Case& point : cases) {
    const std::string place = std::string(point.lat) + "," + point.lon;
    write_file("s.csv", "lat,lon\n" + place + "\n");
    const std::string by_site =
        csv_of({kName, "--sites", "s.csv", "--years", "1901", "--wide"});
    EXPECT_EQ(by_site.substr(by_site.find('\n') + 1).find(place + "," + point.cell), 0U)
        << by_site;
    const std::string by_cell =
        csv_of({kName, "--cell", place, "--years", "1901", "--wide"});
    EXPECT_EQ(by_cell.substr(by_cell.find('\n') + 1).find(point.cell), 0U) << by_cell;
  }
}

TEST_F(Extract, SaysWhatItDidUnlessQuiet) {
  write_grid();
  const Outcome outcome =
      run({kName, "--lat", "60:61", "--lon", "220:222", "--every", "2", "-o", "x.csv"});
  EXPECT_EQ(outcome.status, 0);
  const std::regex seconds(R"(\d+\.\d\d s\n$)");
  EXPECT_EQ(std::regex_replace(outcome.messages, seconds, "TIME"),
            "veldmark-extract: --lon 220:222 taken as -140:-138\n"
            "veldmark-extract: tmp 1901-1902: 8 cells in the box, 2 kept by --every 2, "
            "1 without data skipped, 1 saved to 'x.csv', TIME");
  const Outcome all =
      run({kName, "--lat", "60:61", "--lon", "-140:-138", "-o", "y.csv"});
  EXPECT_EQ(std::regex_replace(all.messages, seconds, "TIME"),
            "veldmark-extract: tmp 1901-1902: 8 cells in the box, 5 without data "
            "skipped, 3 saved to 'y.csv', TIME");
  const Outcome mean =
      run({kName, "--cell", "60.3,-139.6", "--area-mean", "-o", "m.csv"});
  EXPECT_EQ(std::regex_replace(mean.messages, seconds, "TIME"),
            "veldmark-extract: tmp 1901-1902: 1 cell in the box, 0 without data "
            "skipped, 1 averaged to 'm.csv', TIME");
}

TEST_F(Extract, CountsItsSites) {
  write_grid();
  write_file("s.csv", "lat,lon\n60.3,-139.7\n60.3,-140.1\n0,0\n");
  const Outcome outcome =
      run({kName, "--sites", "s.csv", "--radius", "30", "-o", "x.csv"});
  EXPECT_EQ(outcome.status, 0);
  const std::string counts =
      "3 sites, 1 left out, 1 with the nearest cell, 2 saved to 'x.csv', ";
  EXPECT_NE(outcome.messages.find(counts), std::string::npos) << outcome.messages;
}

TEST_F(Extract, ReplacesAnOutputOnlyOnRequestAndNeverAnInput) {
  write_grid();
  write_file("x.csv", "mine");
  const Outcome refused = run({kName, "-o", "x.csv"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(refused.messages,
            "veldmark-extract: 'x.csv' exists; --overwrite replaces it\n");
  EXPECT_EQ(file_content("x.csv"), "mine");
  const Outcome input = run({kName, "-o", kName, "--format", "csv", "--overwrite"});
  EXPECT_EQ(input.messages, "veldmark-extract: " + quoted(kName) +
                                " is the same file as " + quoted(kName) +
                                "; nothing was written\n");
  write_file("s.csv", "lat,lon\n60.3,-139.7\n");
  const Outcome sites =
      run({kName, "--sites", "s.csv", "-o", "./s.csv", "--overwrite"});
  EXPECT_EQ(sites.status, 1);
  EXPECT_EQ(file_content("s.csv"), "lat,lon\n60.3,-139.7\n");
}

TEST_F(Extract, SaysWhyAnOutputCantBeWritten) {
  write_grid();
  std::filesystem::create_directory("folder.csv");
  const auto messages_of = [&](const std::vector<std::string>& output) {
    std::vector<std::string> words{kName, "--cell", "60.25,-139.75", "--overwrite"};
    words.insert(words.end(), output.begin(), output.end());
    const Outcome outcome = run(words);
    EXPECT_EQ(outcome.status, 1);
    return outcome.messages;
  };
  EXPECT_EQ(messages_of({"-o", "none/x.csv"}),
            "veldmark-extract: cannot write 'none/x.csv.part': No such file or "
            "directory\n");
  EXPECT_EQ(messages_of({"-o", "none/x", "--format", "tsf"}),
            "veldmark-extract: cannot write 'none/x.TSF.part': No such file or "
            "directory\n");
  EXPECT_EQ(
      messages_of({"-o", "folder.csv"}),
      "veldmark-extract: cannot write 'folder.csv': it exists and is not a regular "
      "file\n");
}

TEST_F(Extract, TsfLeavesNoPartFiles) {
  write_grid();
  std::filesystem::create_directory("out");
  const Outcome outcome = run(
      {kName, "--cell", "60.25,-139.75", "--format", "tsf", "-o", "out/x", "--quiet"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.messages, "");
  EXPECT_EQ(file_content("out/x.XY").substr(0, 30), " #   Lon.     Lat.      x.TSF ");
  const std::string series = file_content("out/x.TSF");
  EXPECT_EQ(series.size(), 129U + 2 * 78);
  EXPECT_FALSE(std::filesystem::exists("out/x.TSF.part"));
  EXPECT_FALSE(std::filesystem::exists("out/x.XY.part"));
  expect_failure({kName, "--cell", "60.25,-139.25", "--tsf-rule"}, 3,
                 "the cell at 60.25, -139.25 has no data; --sites with --radius finds "
                 "the nearest that has");
}

TEST_F(Extract, ASecondRunOnTheSameOutputFails) {
  write_grid();
  for (const char* format : {"csv", "tsf", "netcdf"}) {
    const bool is_tsf = std::string(format) == "tsf";
    const std::string output = is_tsf ? "x.XY" : "x";
    const FileDescriptor first(output + ".part", O_RDWR | O_CREAT);
    ASSERT_EQ(::flock(first.get(), LOCK_EX), 0);
    ASSERT_TRUE(first.write_all("of the first run"));
    const Outcome second =
        run({kName, "--cell", "60.3,-139.6", "--format", format, "-o", "x"});
    if (second.messages.find("built without netCDF") != std::string::npos) {
      continue;
    }
    EXPECT_EQ(second.status, 1) << format;
    EXPECT_EQ(second.messages, "veldmark-extract: cannot write " + quoted(output) +
                                   ": another run is writing it\n");
    EXPECT_EQ(file_content(output + ".part"), "of the first run") << format;
    EXPECT_FALSE(std::filesystem::exists("x.TSF.part")) << format;
  }
}

// After a failed write the netCDF library fails again at every call. GCOV_PREFIX moves
// the files of a coverage build away, which the limit would truncate.
TEST_F(Extract, AFileSizeLimitIsAFailedWrite) {
  write_grid();
  for (const std::string format : {"csv", "tsf", "netcdf"}) {
    for (const int blocks : {0, 1, 2, 4, 8, 16, 24, 32}) {  // of 512 bytes
      const std::string command = "export GCOV_PREFIX=counts; ulimit -f " +
                                  std::to_string(blocks) + "; '" VELDMARK_EXTRACT "' " +
                                  kName + " --lat 59:61 --lon -141:-138 --format " +
                                  format + " -o x 2> messages";
      const int status = std::system(command.c_str());
      EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) <= 1) << command << status;
      EXPECT_FALSE(std::filesystem::exists("x.part")) << command;
      for (const char* output : {"x", "x.TSF", "x.XY"}) {
        std::filesystem::remove(output);
      }
    }
  }
}

TEST_F(Extract, NoDataHasAStatusOfItsOwn) {
  write_grid();
  expect_failure({kName, "--lat", "-60:-50"}, 3, "no cell has data (14400 cells read)");
  for (const char* edge : {"--lat", "--lon"}) {
    expect_failure(
        {kName, edge, "10.3:10.4"}, 3,
        "no cell has its centre in the box: centres lie at .25 and .75 degrees; "
        "--cell takes the cell that holds a point");
  }
}

TEST_F(Extract, ChecksTheYears) {
  write_grid();
  expect_failure({kName, "--years", "1901:1990"}, 2,
                 "--years 1901:1990: " + quoted(kName) + " holds 1901-1902");
  expect_failure({kName, "--variance-test", "1901"}, 2,
                 "--variance-test 1901: the second period begins with this year, so it "
                 "lies after 1901 and not after 1902");
}

TEST_F(Extract, ABadFieldIsNamed) {
  grid_.set_field(1902, 3, kRow, 81, " 5x0 ");
  write_grid();
  expect_failure({kName, "--cell", "60.25,-139.75"}, 1,
                 quoted(kName) +
                     ": line 5341: characters 401-405 (column 81): ' 5x0 ' is no "
                     "integer");
  // A cell outside the request is not read.
  EXPECT_EQ(csv_of({kName, "--cell", "60.75,-139.25", "--years", "1901", "--wide"}),
            "lat,lon,year,jan,feb,mar,apr,may,jun,jul,aug,sep,oct,nov,dec\n"
            "60.75,-139.25,1901,25.3,25.3,25.3,25.3,25.3,25.3,25.3,25.3,25.3,25.3,25.3,"
            "25.3\n");
}

TEST_F(Extract, ABadFieldAtSeaIsNamed) {
  grid_.set_field(1902, 3, kRow, 90, "-99x9");
  write_grid();
  expect_failure({kName}, 1,
                 quoted(kName) +
                     ": line 5341: characters 446-450 (column 90): '-99x9' is no "
                     "integer");
}

TEST_F(Extract, ABadFieldOfALateStartIsNamed) {
  grid_.set_field(1902, 3, kRow, 82, "99999");
  write_grid();
  expect_failure(
      {kName, "--cell", "60.25,-139.25"}, 1,
      quoted(kName) +
          ": line 5341: characters 406-410 (column 82): '99999' is too large "
          "for a value");
}

// With several processors the globe is read in parts: these months and lines are in the
// first and in the last part.
TEST_F(Extract, LateStartsHaveTheirDataFromAllParts) {
  set(23, kRow, 82, 78);
  write_grid();
  const std::string csv = csv_of({kName, "--wide"});
  EXPECT_NE(csv.find("60.25,-139.25,1901,,,,7.7,,,,,,,,\n"
                     "60.25,-139.25,1902,,,,,,,,,,,,7.8\n"),
            std::string::npos);
}

TEST_F(Extract, TheFirstOfTwoBadFieldsIsNamed) {
  grid_.set_field(1901, 3, kRow, 81, " 1.23");
  grid_.set_field(1902, 12, 1, 81, "  x12");
  write_grid();
  expect_failure({kName}, 1,
                 quoted(kName) +
                     ": line 1021: characters 401-405 (column 81): ' 1.23' is no "
                     "integer");
}

TEST_F(Extract, AValueThatNeedsMoreThan16BitsIsNamed) {
  grid_.set_field(1902, 3, kRow, 81, "64537");
  write_grid();
  expect_failure(
      {kName}, 1,
      quoted(kName) +
          ": line 5341: characters 401-405 (column 81): '64537' is too large "
          "for a value");
}

TEST_F(Extract, TheLargestValueIsTaken) {
  set(0, kRow, 81, 32767);
  write_grid();
  EXPECT_EQ(
      csv_of({kName, "--cell", "60.25,-139.75", "--years", "1901", "--wide"}),
      "lat,lon,year,jan,feb,mar,apr,may,jun,jul,aug,sep,oct,nov,dec\n"
      "60.25,-139.75,1901,3276.7,-1.1,-1.0,-0.9,-0.8,-0.7,-0.6,-0.5,-0.4,-0.3,-0.2,"
      "-0.1\n");
}

TEST_F(Extract, DescribesAFileOfAnotherSize) {
  write_grid();
  const std::string text = file_content(kName);
  constexpr std::size_t kYear = std::size_t{4320} * 3601;
  write_file("cru.1901.1902.tmp.cut", text.substr(0, kYear + 5000));
  expect_failure(
      {"cru.1901.1902.tmp.cut"}, 1,
      "'cru.1901.1902.tmp.cut' is cut or damaged: after 1 whole years it has "
      "5000 bytes more, and a year has 15556320; tersify --check tells more");
  write_file("cru.1901.2024.tmp.x", text);
  expect_failure({"cru.1901.2024.tmp.x"}, 1,
                 "'cru.1901.2024.tmp.x': the name says 1901-2024, but the file holds 2 "
                 "years; with --first-year 1901 it is taken as 1901-1902");
  write_file("cru.1901.1901.tmp.x", text);
  expect_failure({"cru.1901.1901.tmp.x"}, 1,
                 "'cru.1901.1901.tmp.x': the name says 1901-1901, but the file holds 2 "
                 "years; with --first-year 1901 it is taken as 1901-1902");
  write_file("europe.dat", text);
  expect_failure(
      {"europe.dat"}, 2,
      "'europe.dat' does not tell its variable in its name: give --variable, "
      "one of pre tmp dtr tmn tmx vap pet cld frs wet scPDSI");
  expect_failure({"europe.dat", "--variable", "tmp"}, 2,
                 "'europe.dat' does not tell its years in its name: give --first-year");
  EXPECT_EQ(csv_of({"europe.dat", "--variable", "frs", "--first-year", "2023", "--cell",
                    "60.25,-139.75", "--wide", "--years", "2024"}),
            "lat,lon,year,jan,feb,mar,apr,may,jun,jul,aug,sep,oct,nov,dec\n"
            "60.25,-139.75,2024,0.00,0.01,0.02,0.03,0.04,0.05,0.06,0.07,0.08,0.09,0.10,"
            "0.11\n");
}

TEST_F(Extract, AcceptsCrLfAndAMissingLastLineEnd) {
  write_grid();
  const std::string expected = csv_of({kName});
  const std::string text = file_content(kName);
  write_file(kName, text.substr(0, text.size() - 1));
  EXPECT_EQ(csv_of({kName}), expected);
  grid_.end_lines_with_crlf();
  write_grid();
  EXPECT_EQ(csv_of({kName}), expected);
}

TEST_F(Extract, ALineOutOfItsPlaceIsNamed) {
  grid_.set_line(1902, 3, kRow, std::string(3599, ' '));
  grid_.set_line(1902, 3, kRow + 1, std::string(3601, ' '));
  write_grid();
  expect_failure({kName, "--cell", "60.25,-139.75"}, 1,
                 quoted(kName) +
                     ": line 5341: it does not end after 3600 characters; tersify "
                     "--check tells more");
  grid_.set_line(1902, 3, kRow, std::string(1000, ' ') + "\n" + std::string(2599, ' '));
  grid_.set_line(1902, 3, kRow + 1, std::string(3600, ' '));
  write_grid();
  expect_failure({kName, "--cell", "60.25,-139.75"}, 1,
                 quoted(kName) + ": line 5341: it ends early, after 1000 characters");
  grid_.set_line(1902, 3, kRow, std::string(3602, ' '));
  grid_.set_line(1902, 3, kRow - 1, std::string(3598, ' '));
  write_grid();
  expect_failure({kName, "--cell", "60.25,-139.75"}, 1,
                 quoted(kName) +
                     ": line 5341: it does not begin in its place; tersify --check "
                     "tells more");
}

TEST_F(Extract, TheDroughtIndexsRowsRunFromTheNorth) {
  GridText grid(1901, 1, 360, -9999);
  for (int month = 1; month <= 12; ++month) {
    grid.set_value(1901, month, 60, 81, -123);
    grid.set_value(1901, month, 59, 81, 45);
  }
  write_file("scPDSI.1901.1901.new", grid.text());
  EXPECT_EQ(csv_of({"scPDSI.1901.1901.new", "--wide"}),
            "lat,lon,year,jan,feb,mar,apr,may,jun,jul,aug,sep,oct,nov,dec\n"
            "60.25,-139.75,1901,-1.23,-1.23,-1.23,-1.23,-1.23,-1.23,-1.23,-1.23,-1.23,"
            "-1.23,-1.23,-1.23\n"
            "60.75,-139.75,1901,0.45,0.45,0.45,0.45,0.45,0.45,0.45,0.45,0.45,0.45,0.45,"
            "0.45\n");
}

TEST(ExtractInput, IsToldWhatItIs) {
  const TemporaryFolder folder;
  expect_failure({"tmp"}, 1,
                 "'cru_ts4.01.1901.2016.tmp.dat.new', the file of tmp, is not in the "
                 "current folder");
  expect_failure(
      {"temp"}, 1,
      "cannot open 'temp': No such file or directory; the variables are pre tmp "
      "dtr tmn tmx vap pet cld frs wet scPDSI");
  expect_failure({"x.tmp.gz"}, 1, "cannot open 'x.tmp.gz': No such file or directory");
  expect_failure({"none/temp"}, 1,
                 "cannot open 'none/temp': No such file or directory");
  std::filesystem::create_directory("d.tmp");
  expect_failure({"d.tmp"}, 1, "'d.tmp' is a folder");
  write_file("e", "");
  expect_failure({"e"}, 1, "'e' is empty");
  write_file("z", "\x1f\x8b rest");
  expect_failure({"z"}, 1,
                 "'z' is compressed: decompress it with gzip -d (tersify condenses a "
                 "published file as it is)");
  write_file("n", "CDF\x01");
  expect_failure({"n"}, 1,
                 "'n' is a netCDF file, no condensed grid file; tersify condenses "
                 "published ones");
  std::string published;
  for (int i = 0; i < 720; ++i) {
    published += "  -999";
  }
  write_file("p", published + "\n");
  expect_failure({"p"}, 1, "'p' is in the published form: condense it with tersify p");
  write_file("t", "some text\nmore\n");
  expect_failure(
      {"t"}, 1,
      "'t' is no condensed grid file: its first line has 9 characters, not 3600");
  expect_failure(
      {"t", "--variable", "x"}, 2,
      "--variable 'x': the variables are pre tmp dtr tmn tmx vap pet cld frs "
      "wet scPDSI");
}

}  // namespace
}  // namespace veldmark::extract
