// The table of sites of veldmark-extract, from arbitrary bytes. A plain second
// definition must accept the same tables and read the same from them.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "extract/csv_series.h"
#include "extract/sites_file.h"
#include "plain_sites.h"
#include "reached.h"
#include "require.h"
#include "support/scratch_folder.h"
#include "util/failure.h"

namespace veldmark::fuzz {
namespace {

using extract::SiteTable;
using testing::ScratchFolder;
using testing::write_file;

const std::string& file_name() {
  static const ScratchFolder folder;
  static const std::string name = (folder.path() / "sites.csv").string();
  return name;
}

// Returns the table; nullopt if it is refused.
std::optional<SiteTable> read_table(const std::string& text) {
  write_file(file_name(), text);
  try {
    return extract::read_sites(file_name());
  } catch (const Failure& failure) {
    const std::string_view message = failure.what();
    require(message.starts_with("'" + file_name() + "': "), "a refusal names the file",
            message);
    return std::nullopt;
  }
}

void check_sites(const SiteTable& table, const PlainSites& expected,
                 const std::string& text) {
  require(table.header == expected.records.front(),
          "the header is the plain definition's", text);
  require(table.sites.size() == expected.sites.size(), "the sites are counted", text);
  for (std::size_t i = 0; i < table.sites.size(); ++i) {
    const extract::Site& site = table.sites[i];
    const PlainSite& plain = expected.sites[i];
    require(site.fields == expected.records[i + 1],
            "the columns are the plain definition's", text);
    require(site.point.latitude == plain.latitude &&
                site.point.longitude == plain.longitude,
            "the place is the plain definition's", text);
    require(extract::site_title(table, i) == plain.title,
            "the name is the plain definition's", text);
  }
}

// Writes the columns as CSV; reading them back must give the same.
void check_columns_written(const SiteTable& table) {
  for (const extract::Site& site : table.sites) {
    std::string line = extract::csv_field(site.fields.front());
    for (std::size_t column = 1; column < site.fields.size(); ++column) {
      line += ',' + extract::csv_field(site.fields[column]);
    }
    // After another line: in the first line a byte order mark would be skipped.
    const auto records = PlainCsv("header\n" + line + "\n").records();
    require(records && records->size() == 2 && records->back() == site.fields,
            "the columns are carried through", line);
  }
}

void check(const std::string& text) {
  const std::optional<SiteTable> table = read_table(text);
  const std::optional<PlainSites> expected = plain_sites(text);
  reached(table ? "tables read" : "tables refused");
  require(table.has_value() == expected.has_value(),
          "a table is accepted when the plain definition accepts it", text);
  if (!table) return;
  reached("sites read", table->sites.size());
  check_sites(*table, *expected, text);
  check_columns_written(*table);
}

}  // namespace
}  // namespace veldmark::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  veldmark::fuzz::check(std::string(reinterpret_cast<const char*>(data), size));
  return 0;
}
