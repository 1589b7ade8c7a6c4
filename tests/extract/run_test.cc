// Whole runs, except for the series: messages and refusals.

#include "extract/run.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "companion/progress_line.h"
#include "extract/command_line.h"
#include "run_in_process.h"
#include "support/grid_text.h"
#include "support/temporary_folder.h"

namespace veldmark::extract {
namespace {

using testing::Outcome;
using testing::run;
using veldmark::testing::file_content;
using veldmark::testing::GridText;
using veldmark::testing::TemporaryFolder;
using veldmark::testing::write_file;

using Words = std::vector<std::string>;

constexpr const char* kName = "x.1901.1901.tmp.new";

const std::string kCruTsCitation =
    "University of East Anglia Climatic Research Unit; Harris, I.C.; Jones, P.D. "
    "(2017): CRU TS4.01: Climatic Research Unit (CRU) Time-Series (TS) version 4.01 of "
    "high-resolution gridded data of month-by-month variation in climate (Jan. 1901- "
    "Dec. 2016). Centre for Environmental Data Analysis, 04 December 2017. "
    "doi:10.5285/58a8802721c94c66ae45c3baa4d814d0";
const std::string kDroughtCitation =
    "van der Schrier, G., J. Barichivich, K.R. Briffa and P.D. Jones (2013), A "
    "scPDSI-based global data set of dry and wet spells for 1901-2009, J. Geophys. "
    "Res. "
    "Atmos. 118, 4025-4048, doi:10.1002/jgrd.50355 and Osborn, T.J., J. Barichivich, "
    "I. "
    "Harris, G. van der Schrier and P.D. Jones (2017), Monitoring global drought using "
    "the self-calibrating Palmer Drought Severity Index [in \"State of the Climate in "
    "2016\"], Bull. Amer. Meteor. Soc. 98, S32-S33, "
    "doi:10.1175/2017BAMSStateoftheClimate.1";

TEST(RunExtract, ShowsHelpVersionAndCitation) {
  EXPECT_EQ(run({"--help"}).output, help_text());
  EXPECT_EQ(run({"--version"}).output, version_text());
  EXPECT_EQ(run({"--cite", "TMP"}).output, kCruTsCitation + "\n");
  EXPECT_EQ(run({"--cite", "a/scPDSI.3.25.x.new"}).output, kDroughtCitation + "\n");
  const Outcome all = run({"--cite"});
  EXPECT_EQ(all.output,
            "CRU TS: " + kCruTsCitation + "\n\nscPDSI: " + kDroughtCitation + "\n");
  EXPECT_EQ(all.status, 0);
  EXPECT_EQ(all.messages, "");
  const Outcome unknown = run({"--cite", "europe.dat"});
  EXPECT_EQ(unknown.status, 2);
  EXPECT_EQ(unknown.output, "");
  EXPECT_EQ(unknown.messages,
            "veldmark-extract: 'europe.dat': the variables are pre tmp dtr tmn tmx vap "
            "pet cld frs wet scPDSI\nTry 'veldmark-extract --help' for more "
            "information.\n");
}

// A year with one cell with data, at 60.25 N, 139.75 W.
class RunExtractOnAGrid : public ::testing::Test {
 protected:
  RunExtractOnAGrid() {
    GridText grid(1901, 1, 360, -999);
    for (int month = 1; month <= 12; ++month) {
      grid.set_value(1901, month, 301, 81, month);
    }
    write_file(kName, grid.text());
  }

  // Returns what a run shows on a terminal, with a clock that advances by `step`
  // seconds at each call.
  static std::string screen_of(double step) {
    std::ostringstream output;
    std::ostringstream screen;
    double time = -step;
    const companion::Environment environment{
        .input = -1,
        .output = output,
        .messages = {
            .stream = screen, .shown = true, .clock = [&] { return time += step; }}};
    const Words words{kName, "--cell", "60.3,-139.6", "-o", "x.csv", "--quiet"};
    EXPECT_EQ(run_extract(words, environment), 0);
    return screen.str();
  }

  TemporaryFolder folder_;
};

// One row is read 13 times: the first month twice.
TEST_F(RunExtractOnAGrid, ShowsProgressAfterHalfASecond) {
  // 0 and 0.125 at the start, then 0.25, 0.375, 0.5: nothing is shown. From 0.625 on,
  // each piece looks at the clock twice.
  std::string expected;
  for (int pieces = 4; pieces <= 13; ++pieces) {
    expected +=
        "\r\x1b[Kreading: " +
        companion::progress_text(pieces * 3601, 13 * 3601, 0.75 + 0.25 * (pieces - 4));
  }
  EXPECT_EQ(screen_of(0.125), expected + "\r\x1b[K");
  EXPECT_NE(expected.find("reading: 30 % done, 0 MB/s, 2 s left\r"), std::string::npos);
}

// One byte more than two pieces would take a second off the time left.
TEST_F(RunExtractOnAGrid, CountsEachByteOnce) {
  constexpr double kStep = 0.80001;
  std::string expected;
  for (int pieces = 1; pieces <= 13; ++pieces) {
    expected +=
        "\r\x1b[Kreading: " +
        companion::progress_text(pieces * 3601, 13 * 3601, (2 * pieces + 1) * kStep);
  }
  EXPECT_EQ(screen_of(kStep), expected + "\r\x1b[K");
}

TEST_F(RunExtractOnAGrid, ShowsNoProgressBeforeHalfASecond) {
  EXPECT_EQ(screen_of(0.03), "");  // the last look is at 0.42
}

TEST_F(RunExtractOnAGrid, TheInputIsARegularFile) {
  const auto fault_of = [](const std::string& name) {
    const Outcome outcome =
        run({name, "--variable", "tmp", "--first-year", "1901", "-o", "x.csv"});
    EXPECT_EQ(outcome.status, 1);
    return outcome.messages;
  };
  EXPECT_EQ(fault_of("/dev/null"),
            "veldmark-extract: '/dev/null' is no regular file: its lines can't be "
            "addressed\n");
  std::filesystem::create_symlink("loop", "loop");
  EXPECT_EQ(
      fault_of("loop"),
      "veldmark-extract: cannot open 'loop': Too many levels of symbolic links\n");
}

TEST_F(RunExtractOnAGrid, NetcdfHasTheCalendarOfTheYearsFrom1583On) {
  const auto outcome_of = [](const std::string& first_year) {
    return run({kName, "--first-year", first_year, "--format", "netcdf", "-o",
                first_year + ".nc"});
  };
  const Outcome first = outcome_of("1583");
  if (first.messages.find("built without netCDF") != std::string::npos) {
    GTEST_SKIP() << first.messages;
  }
  EXPECT_EQ(first.status, 0) << first.messages;
  const Outcome refused = outcome_of("1582");
  EXPECT_EQ(refused.status, 2);
  EXPECT_EQ(refused.messages,
            "veldmark-extract: netcdf is written for years from 1583 on\n"
            "Try 'veldmark-extract --help' for more information.\n");
  EXPECT_FALSE(std::filesystem::exists("1582.nc"));
}

// The first year doesn't vary; the second holds 1 and -1 six times each, so that the
// pooled variance is 12 / 24, the mean fourth power as well, the kurtosis 2, and either
// count 24 / (2 - 9 / 11) = 20.3.
TEST_F(RunExtractOnAGrid, TestsTheVarianceOfCellsAndSites) {
  GridText grid(1902, 1, 360, -999);
  for (int month = 1; month <= 12; ++month) {
    grid.set_value(1901, month, 301, 81, 0);
    grid.set_value(1902, month, 301, 81, month % 2 == 0 ? 10 : -10);
  }
  write_file("v.1901.1902.tmp.new", grid.text());
  write_file("s.csv", "site,lat,lon\nA,60.25,-139.75\nB,0,0\n");
  const Words words{"v.1901.1902.tmp.new",
                    "--variance-test",
                    "1902",
                    "--quiet",
                    "--overwrite",
                    "-o",
                    "x.csv"};
  ASSERT_EQ(run(words).status, 0);
  EXPECT_EQ(file_content("x.csv"),
            "lat,lon,f,probability,n1,n2,adjusted_n1,adjusted_n2\n"
            "60.25,-139.75,Inf,0,12,12,20,20\n");
  Words with_sites = words;
  with_sites.insert(with_sites.end(), {"--sites", "s.csv"});
  ASSERT_EQ(run(with_sites).status, 0);
  EXPECT_EQ(file_content("x.csv"),
            "site,lat,lon,cell_lat,cell_lon,distance_km,f,probability,n1,n2,"
            "adjusted_n1,adjusted_n2\n"
            "A,60.25,-139.75,60.25,-139.75,0.0,Inf,0,12,12,20,20\n");
}

TEST_F(RunExtractOnAGrid, TheVarianceTestNeedsTwoPeriods) {
  const auto messages_of = [](const std::string& year) {
    return run({kName, "--first-year", "1951", "--variance-test", year, "-o", "v.csv"})
        .messages;
  };
  const std::string fault =
      ": the second period begins with this year, so it lies after 1951 and not after "
      "1951\nTry 'veldmark-extract --help' for more information.\n";
  EXPECT_EQ(messages_of("1951"), "veldmark-extract: --variance-test 1951" + fault);
  EXPECT_EQ(messages_of("1952"), "veldmark-extract: --variance-test 1952" + fault);
}

TEST_F(RunExtractOnAGrid, SitesWithoutDataAreNamed) {
  write_file("s.csv", "lat,lon\n60.25,-130.5\n-60,0\n");
  const auto messages_of = [](const Words& more) {
    Words words{kName, "--sites", "s.csv", "-o", "none.csv"};
    words.insert(words.end(), more.begin(), more.end());
    const Outcome outcome = run(words);
    EXPECT_EQ(outcome.status, 3);
    EXPECT_FALSE(std::filesystem::exists("none.csv"));
    return outcome.messages;
  };
  const std::string first = "veldmark-extract: site 1 (60.25, -130.5) is left out: ";
  const std::string second = "veldmark-extract: site 2 (-60, 0) is left out: ";
  const std::string end = "veldmark-extract: no site has data\n";
  const std::string own =
      "its cell has no data; --radius allows the nearest that has\n";
  EXPECT_EQ(messages_of({}), first + own + second + own + end);
  const std::string around = "no cell with data within 12.5 km\n";
  EXPECT_EQ(messages_of({"--radius", "12.5"}), first + around + second + around + end);
}

TEST_F(RunExtractOnAGrid, SaysWhichYearsTheFileHolds) {
  const auto messages_of = [](const Words& more) {
    Words words{kName, "-o", "none.csv"};
    words.insert(words.end(), more.begin(), more.end());
    return run(words).messages;
  };
  const std::string try_help =
      "\nTry 'veldmark-extract --help' for more information.\n";
  EXPECT_EQ(messages_of({"--years", "1900:1901"}),
            std::string("veldmark-extract: --years 1900:1901: '") + kName +
                "' holds 1901-1901" + try_help);
  std::filesystem::copy_file(kName, "x.1901.1902.tmp.new");
  EXPECT_EQ(run({"x.1901.1902.tmp.new", "-o", "none.csv"}).messages,
            "veldmark-extract: 'x.1901.1902.tmp.new': the name says 1901-1902, but the "
            "file holds 1 year; with --first-year 1901 it is taken as 1901-1901\n");
  std::filesystem::copy_file(kName, "x.1901.1900.tmp.new");
  EXPECT_EQ(run({"x.1901.1900.tmp.new", "-o", "none.csv"}).messages,
            "veldmark-extract: 'x.1901.1900.tmp.new' does not tell its years in its "
            "name: give --first-year" +
                try_help);
}

TEST_F(RunExtractOnAGrid, AFailedWriteOfTsfIsTold) {
  struct rlimit before {};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
  const struct rlimit small { 100, before.rlim_max };
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
  const Outcome outcome = run({kName, "--format", "tsf", "-o", "x"});
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.messages,
            "veldmark-extract: cannot write 'x.TSF.part': File too large\n");
  EXPECT_FALSE(std::filesystem::exists("x.TSF") || std::filesystem::exists("x.XY"));
}

}  // namespace
}  // namespace veldmark::extract
