#include "extract/netcdf_common.h"

#include <array>
#include <chrono>
#include <ctime>
#include <iomanip>
#include <sstream>
#include <string>
#include <vector>

#include "extract/cf_attributes.h"
#include "extract/citation.h"
#include "extract/release.h"
#include "grid/grid_layout.h"
#include "util/without_folders.h"

namespace veldmark::extract {
namespace {

std::string now_in_utc() {
  const std::time_t now =
      std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  std::tm utc{};
  ::gmtime_r(&now, &utc);
  std::ostringstream text;
  text << std::put_time(&utc, "%Y-%m-%dT%H:%M:%SZ");
  return text.str();
}

std::string subject_of(const Job& job) {
  const std::string name(job.input.entry.long_name);
  if (job.options.area_mean) {
    return "area mean of " + name;
  }
  return job.options.variance_test ? "variance test of " + name : name;
}

}  // namespace

NetcdfTime::NetcdfTime(NetcdfFile& file, const Years& years, int bounds)
    : years_(years) {
  const std::int32_t year_count = years.count();
  dimension_ =
      file.add_dimension("time", static_cast<std::size_t>(year_count) * kMonthsPerYear);
  middles_ =
      file.add_variable("time", NetcdfFile::Type::kDouble, std::array{dimension_});
  file.add_text(middles_, "standard_name", "time");
  file.add_text(middles_, "long_name", "time");
  file.add_text(middles_, "units", "days since 1900-01-01");
  file.add_text(middles_, "calendar", "standard");
  file.add_text(middles_, "axis", "T");
  file.add_text(middles_, "bounds", "time_bnds");
  bounds_ = file.add_variable("time_bnds", NetcdfFile::Type::kDouble,
                              std::array{dimension_, bounds});
}

void NetcdfTime::put(NetcdfFile& file) const {
  std::vector<double> middles;
  std::vector<double> bounds;
  const std::int32_t month_count = years_.count() * kMonthsPerYear;
  for (std::int32_t month = 0; month < month_count; ++month) {
    const MonthTime time = month_time(years_.first, month);
    middles.push_back(time.middle);
    bounds.insert(bounds.end(), {time.begin, time.end});
  }
  file.put(middles_, middles);
  file.put(bounds_, bounds);
}

int add_degrees(NetcdfFile& file, std::string_view name,
                std::span<const int> dimensions) {
  const bool is_latitude = name.ends_with("lat");
  const std::string long_name = is_latitude ? "latitude" : "longitude";
  const int variable = file.add_variable(name, NetcdfFile::Type::kDouble, dimensions);
  if (name == "lat" || name == "lon") {
    file.add_text(variable, "standard_name", long_name);
    file.add_text(variable, "long_name", long_name);
  } else {
    file.add_text(variable, "long_name", long_name + " of the cell's centre");
  }
  file.add_text(variable, "units", is_latitude ? "degrees_north" : "degrees_east");
  return variable;
}

int add_values(NetcdfFile& file, const Job& job, std::span<const int> dimensions,
               std::span<const std::size_t> chunks) {
  const VariableEntry& entry = job.input.entry;
  const CfAttributes attributes = cf_attributes(entry);
  const int variable =
      file.add_variable(entry.short_name, NetcdfFile::Type::kShort, dimensions);
  file.set_storage(variable, static_cast<std::int16_t>(entry.MissingCode), chunks,
                   job.options.deflate);
  file.add_text(variable, "standard_name", attributes.standard_name);
  file.add_text(variable, "long_name", entry.long_name);
  file.add_text(variable, "units", attributes.units);
  file.add_text(variable, "cell_methods", attributes.cell_methods);
  file.add_number(variable, "scale_factor", 1.0 / entry.stored_per_unit);
  return variable;
}

void describe_file(NetcdfFile& file, const Job& job) {
  constexpr int kAll = NetcdfFile::kGlobal;
  const VariableEntry& entry = job.input.entry;
  const std::string source(without_folders(job.input.name));
  file.add_text(kAll, "Conventions", "CF-1.8");
  const Release release = release_of(entry, source);
  file.add_text(kAll, "title",
                subject_of(job) + ", " + years_text(job.years) + ", from " +
                    (release.number.empty() ? "" : release.title + ", ") + source);
  if (entry.is_in_cru_ts_distribution) {
    file.add_text(kAll, "institution",
                  "University of East Anglia Climatic Research Unit");
  }
  file.add_text(kAll, "source", source);
  if (!release.number.empty()) {
    file.add_text(kAll, "references", citation_of_file(entry, source, job.input.years));
  }
  file.add_text(kAll, "history", now_in_utc() + " veldmark-extract" + job.command_line);
}

}  // namespace veldmark::extract
