// The table of sites: a CSV file whose header names a column of latitudes, a column of
// longitudes and, optionally, a column of names. All columns go to the output.

#ifndef VELDMARK_EXTRACT_SITES_FILE_H_
#define VELDMARK_EXTRACT_SITES_FILE_H_

#include <cstddef>
#include <string>
#include <vector>

#include "extract/place.h"

namespace veldmark::extract {

struct Site {
  Point point;                      // longitude -180..180
  std::vector<std::string> fields;  // one per column, unchanged
};

struct SiteTable {
  std::vector<std::string> header;
  std::vector<Site> sites;
  std::size_t name_column = kNoColumn;  // index into the header

  static constexpr std::size_t kNoColumn = static_cast<std::size_t>(-1);
};

// Returns the name of a site for messages; "site 3", counted from 1, if it has none.
std::string site_title(const SiteTable& table, std::size_t index);

// Reads the table of sites from the file `name`: CSV with commas, fields quoted or not,
// lines that end in LF or CR LF, with or without a byte order mark. Empty lines are
// skipped.
//
//   latitude    a column headed lat or latitude, -90..90
//   longitude   a column headed lon, long, lng or longitude, -180..360
//   name        a column headed name, site or id, in this order of preference
//
// Headings are compared without regard to case and to blanks around them.
// Throws Failure, with the record if there is one, for a file that can't be read or has
// no sites, a table without these columns, a record with more or fewer fields than the
// header, and an invalid latitude or longitude.
SiteTable read_sites(const std::string& name);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_SITES_FILE_H_
