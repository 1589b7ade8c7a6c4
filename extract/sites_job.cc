#include "extract/sites_job.h"

#include <cstdint>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "catalogue/variable_name.h"
#include "extract/csv_series.h"
#include "extract/decimal_text.h"
#include "extract/nearest_cell.h"
#include "extract/netcdf_output.h"
#include "extract/output_names.h"
#include "extract/site_series.h"
#include "extract/sites_file.h"
#include "extract/text_output.h"
#include "extract/value_texts.h"
#include "extract/variance_columns.h"

namespace veldmark::extract {
namespace {

// The series of all sites, and the blocks that hold them.
struct FoundSites {
  SeriesBlock own;     // the cells that contain the sites
  SeriesBlock nearby;  // those within the radius of sites without data of their own
  std::vector<SiteSeries> sites;
  std::vector<std::size_t> left_out;
  std::size_t with_nearest_cell = 0;  // instead of their own cell
};

class SiteSearch {
 public:
  SiteSearch(const Job& job, const SiteTable& table)
      : job_(job), table_(table), order_(job.input.entry.row_order) {}

  FoundSites find() {
    std::vector<Cell> own_cells;
    for (const Site& site : table_.sites) {
      own_cells.push_back(cell_of(site.point, order_));
    }
    found_.own = read(own_cells);
    if (job_.options.radius_km) {
      read_around(*job_.options.radius_km);
    }
    for (std::size_t i = 0; i < own_cells.size(); ++i) {
      add_site(i, own_cells[i]);
    }
    return std::move(found_);
  }

 private:
  [[nodiscard]] SeriesBlock read(const std::vector<Cell>& cells) const {
    return read_cells_of(job_, CellSet(cells));
  }

  // Reads the cells within the radius of sites whose own cells have no data.
  void read_around(double radius_km) {
    std::vector<Cell> cells;
    for (const Site& site : table_.sites) {
      if (!has_data(job_, found_.own.series(cell_of(site.point, order_)))) {
        const std::vector<Cell> nearby = cells_around(site.point, radius_km, order_);
        cells.insert(cells.end(), nearby.begin(), nearby.end());
      }
    }
    if (!cells.empty()) {
      found_.nearby = read(cells);
    }
  }

  void add_site(std::size_t index, const Cell& own_cell) {
    const std::span<const std::int16_t> series = found_.own.series(own_cell);
    if (has_data(job_, series)) {
      found_.sites.push_back({index, own_cell, series});
      return;
    }
    std::optional<Cell> nearest;
    if (job_.options.radius_km) {
      nearest = nearest_cell(
          table_.sites[index].point, *job_.options.radius_km, order_,
          [&](const Cell& cell) { return has_data(job_, found_.nearby.series(cell)); });
    }
    if (nearest) {
      found_.sites.push_back({index, *nearest, found_.nearby.series(*nearest)});
      ++found_.with_nearest_cell;
    } else {
      found_.left_out.push_back(index);
    }
  }

  const Job& job_;
  const SiteTable& table_;
  RowOrder order_;
  FoundSites found_;
};

// Returns the site's own columns, then cell_lat, cell_lon and distance_km.
std::string place_columns(const Site& site, const Cell& cell, RowOrder order) {
  std::string columns;
  for (const std::string& field : site.fields) {
    columns += csv_field(field) + ",";
  }
  const Point centre = centre_of(cell, order);
  return columns + short_decimal_text(centre.latitude) + "," +
         short_decimal_text(centre.longitude) + "," +
         decimal_text(distance_km(site.point, centre), 1) + ",";
}

void write_heading(const Job& job, const SiteTable& table, TextOutput& output) {
  for (const std::string& title : table.header) {
    output.write(csv_field(title) + ",");
  }
  output.write("cell_lat,cell_lon,distance_km,");
  output.write(job.options.variance_test ? kVarianceHeading
                                         : csv_series_heading(job.options.wide));
  output.write("\n");
}

void write_csv(const Job& job, const SiteTable& table, const FoundSites& found) {
  const VariableEntry& entry = job.input.entry;
  TextOutput output(job.options.output, if_output_exists(job.options));
  write_heading(job, table, output);
  const ValueTexts texts(job.options.stored ? 0 : decimals_of(entry),
                         entry.MissingCode);
  CsvSeries csv(output, texts, job.years, job.options.wide);
  for (const SiteSeries& site : found.sites) {
    const std::string place =
        place_columns(table.sites[site.site_index], site.cell, entry.row_order);
    if (job.options.variance_test) {
      output.write(place);
      output.write(
          variance_columns(test_variance(site.series, second_period(job), entry)));
      output.write("\n");
    } else {
      csv.write(place, site.series);
    }
  }
  output.complete();
}

std::string reason_to_leave_out(const Options& options) {
  if (!options.radius_km) {
    return "its cell has no data; --radius allows the nearest that has";
  }
  return "no cell with data within " + short_decimal_text(*options.radius_km) + " km";
}

void report_left_out(const Job& job, const SiteTable& table, const FoundSites& found) {
  for (const std::size_t index : found.left_out) {
    const Point& point = table.sites[index].point;
    note(job, site_title(table, index) + " (" + short_decimal_text(point.latitude) +
                  ", " + short_decimal_text(point.longitude) +
                  ") is left out: " + reason_to_leave_out(job.options));
  }
}

}  // namespace

std::string extract_sites(const Job& job) {
  const SiteTable table = read_sites(*job.options.sites);
  const FoundSites found = SiteSearch(job, table).find();
  report_left_out(job, table, found);
  if (found.sites.empty()) {
    throw NothingFound("no site has data");
  }
  if (job.options.format == Format::kCsv) {
    write_csv(job, table, found);
  } else if (job.options.variance_test) {
    write_netcdf_site_tests(job, table, found.sites);
  } else {
    write_netcdf_sites(job, table, found.sites);
  }
  return count_of(std::ssize(table.sites), "site") + ", " +
         std::to_string(found.left_out.size()) + " left out, " +
         std::to_string(found.with_nearest_cell) + " with the nearest cell, " +
         std::to_string(found.sites.size()) + " saved";
}

}  // namespace veldmark::extract
