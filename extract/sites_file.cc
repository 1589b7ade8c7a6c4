#include "extract/sites_file.h"

#include <initializer_list>
#include <optional>
#include <string_view>
#include <utility>

#include "catalogue/variable_name.h"
#include "extract/csv_table.h"
#include "util/failure.h"
#include "util/in_quotes.h"

namespace veldmark::extract {
namespace {

constexpr double kPole = 90;

std::string_view trim_blanks(std::string_view text) {
  constexpr std::string_view kBlanks = " \t";
  const std::size_t begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) {
    return {};
  }
  return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

// Returns the column headed by the first of `titles` that occurs; kNoColumn if none
// does.
std::size_t find_column(const std::vector<std::string>& header,
                        std::initializer_list<std::string_view> titles) {
  for (const std::string_view title : titles) {
    for (std::size_t column = 0; column < header.size(); ++column) {
      if (lower_case(trim_blanks(header[column])) == title) {
        return column;
      }
    }
  }
  return SiteTable::kNoColumn;
}

struct Columns {
  std::size_t latitude;
  std::size_t longitude;
};

Columns find_columns(const std::string& file, const SiteTable& table) {
  const Columns columns{
      .latitude = find_column(table.header, {"lat", "latitude"}),
      .longitude = find_column(table.header, {"lon", "long", "lng", "longitude"})};
  const std::string& first = table.header.front();
  if (table.header.size() == 1 && first.find(';') != std::string::npos) {
    throw Failure(in_quotes(file) +
                  ": semicolons stand between the columns; commas are needed" +
                  ", and decimal points in the numbers");
  }
  if (table.header.size() == 1 && first.find('\t') != std::string::npos) {
    throw Failure(in_quotes(file) +
                  ": tabs stand between the columns; commas are needed");
  }
  if (columns.latitude == SiteTable::kNoColumn) {
    throw Failure(in_quotes(file) + ": no column is headed lat or latitude");
  }
  if (columns.longitude == SiteTable::kNoColumn) {
    throw Failure(in_quotes(file) +
                  ": no column is headed lon, long, lng or longitude");
  }
  return columns;
}

// Returns the place of a site. Throws Failure; `where` is the file and the record, for
// its message.
Point parse_site(const std::string& where, const Columns& columns,
                 const std::vector<std::string>& fields) {
  constexpr double kWest = -180;
  constexpr double kEast = 360;
  const std::string& latitude_text = fields[columns.latitude];
  const std::string& longitude_text = fields[columns.longitude];
  const std::optional<double> latitude = parse_degrees(trim_blanks(latitude_text));
  const std::optional<double> longitude = parse_degrees(trim_blanks(longitude_text));
  if (!latitude) {
    throw Failure(where + ": the latitude " + in_quotes(latitude_text) +
                  " is no number");
  }
  if (!longitude) {
    throw Failure(where + ": the longitude " + in_quotes(longitude_text) +
                  " is no number");
  }
  if (*latitude < -kPole || *latitude > kPole) {
    const bool exchanged = -kPole <= *longitude && *longitude <= kPole;
    throw Failure(where + ": the latitude " + latitude_text + " lies beyond the poles" +
                  (exchanged ? "; are latitude and longitude exchanged?" : ""));
  }
  if (*longitude < kWest || *longitude > kEast) {
    throw Failure(where + ": the longitude " + longitude_text +
                  " lies outside -180 to 360");
  }
  return {.latitude = *latitude, .longitude = to_signed_longitude(*longitude)};
}

}  // namespace

std::string site_title(const SiteTable& table, std::size_t index) {
  if (table.name_column != SiteTable::kNoColumn) {
    const std::string& name = table.sites[index].fields[table.name_column];
    if (!trim_blanks(name).empty()) {
      return name;
    }
  }
  return "site " + std::to_string(index + 1);
}

SiteTable read_sites(const std::string& name) {
  std::vector<CsvRecord> records = read_csv(name);
  if (records.empty()) {
    throw Failure(in_quotes(name) +
                  ": the file is empty; a header with lat and lon is needed");
  }
  SiteTable table;
  table.header = std::move(records.front().fields);
  table.name_column = find_column(table.header, {"name", "site", "id"});
  const Columns columns = find_columns(name, table);
  records.erase(records.begin());
  if (records.empty()) {
    throw Failure(in_quotes(name) + ": no sites follow the header");
  }
  for (CsvRecord& record : records) {
    const std::string where =
        in_quotes(name) + ": record " + std::to_string(record.number);
    if (record.fields.size() != table.header.size()) {
      throw Failure(where + " has " + std::to_string(record.fields.size()) +
                    " fields, the header has " + std::to_string(table.header.size()));
    }
    const Point point = parse_site(where, columns, record.fields);
    table.sites.push_back({point, std::move(record.fields)});
  }
  return table;
}

}  // namespace veldmark::extract
