#include "extract/sites_file.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/temporary_folder.h"
#include "util/failure.h"

namespace veldmark::extract {
namespace {

using Fields = std::vector<std::string>;
using veldmark::testing::TemporaryFolder;
using veldmark::testing::write_file;

SiteTable sites_of(const std::string& content) {
  const TemporaryFolder folder;
  write_file("sites.csv", content);
  return read_sites("sites.csv");
}

std::string fault_of(const std::string& content) {
  try {
    sites_of(content);
  } catch (const Failure& failure) {
    return failure.what();
  }
  return "";
}

TEST(SitesFile, KeepsAllColumns) {
  const SiteTable table =
      sites_of("plot,LAT, Lon ,note\nA,60.3,-139.6,\"x, \"\"y\"\"\"\nB, 1 ,282,\n");
  EXPECT_EQ(table.header, (Fields{"plot", "LAT", " Lon ", "note"}));
  ASSERT_EQ(table.sites.size(), 2U);
  EXPECT_EQ(table.sites[0].point.latitude, 60.3);
  EXPECT_EQ(table.sites[0].point.longitude, -139.6);
  EXPECT_EQ(table.sites[0].fields, (Fields{"A", "60.3", "-139.6", "x, \"y\""}));
  EXPECT_EQ(table.sites[1].point.latitude, 1);
  EXPECT_EQ(table.sites[1].point.longitude, -78);
  EXPECT_EQ(table.sites[1].fields, (Fields{"B", " 1 ", "282", ""}));
}

TEST(SitesFile, KnowsTheColumnsByTheirAliases) {
  for (const char* header :
       {"lat,lon", "latitude,longitude", "Lat,Long", "LATITUDE,lng"}) {
    const SiteTable table = sites_of(std::string(header) + "\n10,20\n");
    EXPECT_EQ(table.sites[0].point.latitude, 10) << header;
    EXPECT_EQ(table.sites[0].point.longitude, 20) << header;
  }
  EXPECT_EQ(sites_of("lon,lat\n20,10\n").sites[0].point.latitude, 10);
}

TEST(SitesFile, AcceptsByteOrderMarkCrLfEmptyLinesAndAMissingLastLineEnd) {
  const SiteTable table =
      sites_of("\xEF\xBB\xBFlat,lon,name\r\n1,2,A\r\n\r\n3,4,\"two\r\nlines\"");
  ASSERT_EQ(table.sites.size(), 2U);
  EXPECT_EQ(table.header, (Fields{"lat", "lon", "name"}));
  EXPECT_EQ(table.sites[1].fields, (Fields{"3", "4", "two\r\nlines"}));
}

TEST(SitesFile, NamesASiteByItsNameOrItsNumber) {
  const SiteTable named = sites_of("id,lat,lon,name\n7,1,2,Oak\n8,1,2, \n");
  EXPECT_EQ(site_title(named, 0), "Oak");
  EXPECT_EQ(site_title(named, 1), "site 2");
  EXPECT_EQ(site_title(sites_of("id,Site,lat,lon\n7,Oak,1,2\n"), 0), "Oak");
  EXPECT_EQ(site_title(sites_of("id,lat,lon\n7,1,2\n"), 0), "7");
  EXPECT_EQ(site_title(sites_of("lat,lon\n1,2\n"), 0), "site 1");
}

TEST(SitesFile, SaysWhatIsWrong) {
  EXPECT_EQ(fault_of(""),
            "'sites.csv': the file is empty; a header with lat and lon is needed");
  EXPECT_EQ(fault_of("lat,lon\n"), "'sites.csv': no sites follow the header");
  EXPECT_EQ(fault_of("lat;lon\n1;2\n"),
            "'sites.csv': semicolons stand between the columns; commas are needed, and "
            "decimal points in the numbers");
  EXPECT_EQ(fault_of("lat\tlon\n1\t2\n"),
            "'sites.csv': tabs stand between the columns; commas are needed");
  EXPECT_EQ(fault_of("xlat,lon\n1,2\n"),
            "'sites.csv': no column is headed lat or latitude");
  EXPECT_EQ(fault_of("lat,x\n1,2\n"),
            "'sites.csv': no column is headed lon, long, lng or longitude");
  EXPECT_EQ(fault_of("lat\n1\n"),
            "'sites.csv': no column is headed lon, long, lng or longitude");
  EXPECT_EQ(fault_of("lat,lon\n-90.5,-91\n"),
            "'sites.csv': record 2: the latitude -90.5 lies beyond the poles");
  EXPECT_EQ(fault_of("lat,lon\n-120,-90\n"),
            "'sites.csv': record 2: the latitude -120 lies beyond the poles; are "
            "latitude and longitude exchanged?");
  EXPECT_EQ(fault_of("lat,lon\n12,-180.5\n"),
            "'sites.csv': record 2: the longitude -180.5 lies outside -180 to 360");
  EXPECT_EQ(fault_of("lat,lon\n90,-180\n-90,360\n"), "");
  EXPECT_EQ(fault_of("lat,lon\n1,2\n3\n"),
            "'sites.csv': record 3 has 1 fields, the header has 2");
  EXPECT_EQ(fault_of("lat,lon\n1,2\n3,4,5\n"),
            "'sites.csv': record 3 has 3 fields, the header has 2");
  EXPECT_EQ(fault_of("lat,lon\n1N,2\n"),
            "'sites.csv': record 2: the latitude '1N' is no number");
  EXPECT_EQ(fault_of("lat,lon\n1,\n"),
            "'sites.csv': record 2: the longitude '' is no number");
  EXPECT_EQ(fault_of("lat,lon\n120.5,90\n"),
            "'sites.csv': record 2: the latitude 120.5 lies beyond the poles; are "
            "latitude and longitude exchanged?");
  EXPECT_EQ(fault_of("lat,lon\n120.5,145\n"),
            "'sites.csv': record 2: the latitude 120.5 lies beyond the poles");
  EXPECT_EQ(fault_of("lat,lon\n12,360.5\n"),
            "'sites.csv': record 2: the longitude 360.5 lies outside -180 to 360");
  EXPECT_EQ(fault_of("lat,lon\n1,\"2\n"),
            "'sites.csv': record 2: a quote is never closed");
  EXPECT_EQ(
      fault_of("lat,lon\n1,2\"3\n"),
      "'sites.csv': record 2: a quote stands inside a field that has none around it");
}

TEST(SitesFile, SaysWhyItCantBeRead) {
  const TemporaryFolder folder;
  EXPECT_THROW(
      {
        try {
          read_sites("none.csv");
        } catch (const Failure& failure) {
          EXPECT_STREQ(failure.what(),
                       "cannot read 'none.csv': No such file or directory");
          throw;
        }
      },
      Failure);
}

}  // namespace
}  // namespace veldmark::extract
