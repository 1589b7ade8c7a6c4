#include <gtest/gtest.h>

#include "extract/command_line.h"

namespace veldmark::extract {
namespace {

TEST(HelpText, IsThisText) {
  EXPECT_EQ(help_text(),
            R"(Usage: veldmark-extract INPUT [OPTION]...

Extracts monthly series from a condensed grid file, without questions. INPUT is the
file, or the short name of a variable (pre tmp dtr tmn tmx vap pet cld frs wet scpdsi),
which stands for its file of CRU TS 4.01 in the current folder.

Input
  --variable NAME        the variable, where the file's name does not tell it
  --first-year YEAR      the file's first year, where the name does not tell it or is
                         wrong; the last year follows from the size

Where (without any of these: the globe)
  --lat S:N, --lon W:E   cells whose centres lie in the box, edges included; W greater
                         than E crosses the 180 degree meridian; longitudes from -180
                         to 360
  --cell LAT,LON         the cell that holds a point; on an edge, the cell north and
                         east of it
  --sites FILE           the cells of a CSV table of points, with columns lat and lon
  --radius KM            for a site whose own cell has no data: the nearest cell with
                         data whose centre is at most KM away

When
  --years A:B            these years; all years without

What
  --every N              every N-th row and column of the box
  --area-mean            the mean over the cells with data in each month, weighted by
                         the cosine of latitude
  --variance-test YEAR   instead of the series, a test of each cell for a change of
                         variance from YEAR on

How
  -o, --output FILE      the output; standard output without
  --format FORMAT        csv, tsf or netcdf; without, by the ending of FILE: .nc is
                         netcdf, .csv or no ending csv, any other is refused
  --wide                 csv: a line a year with twelve months
  --stored               csv: the stored integers instead of physical units
  --tsf-rule             cells that have data in the first month only, as the dialogue
                         saves them; the rule of tsf
  --deflate N            netcdf: compression from 0, none, to 9; 1 without
  --overwrite            replace an existing output
  --quiet                no summary

  --cite                 show how to cite the data
  --help                 show this text
  --version              show the version

Exit status: 0 when all is well, 1 after a failure, 2 for a wrong command line, 3 when
no cell with data was found.
)");
}

TEST(HelpText, TheVersionIsTheProjects) {
  EXPECT_EQ(version_text(),
            "veldmark-extract (veldmark) " VELDMARK_EXTRACT_VERSION "\n");
}

}  // namespace
}  // namespace veldmark::extract
