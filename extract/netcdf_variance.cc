// Writes the variance test of the cells of a grid, or of sites, to a netCDF file.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "extract/netcdf_axes.h"
#include "extract/netcdf_common.h"
#include "extract/netcdf_file.h"
#include "extract/netcdf_output.h"
#include "extract/netcdf_site_table.h"
#include "extract/output_names.h"
#include "extract/variance_test.h"

namespace veldmark::extract {
namespace {

// The six numbers of a test, each as a variable. Cells without data hold the fill
// value; NaN means that the cell has data, but its test has no result.
class TestVariables {
 public:
  TestVariables(NetcdfFile& file, const Job& job, std::span<const int> dimensions,
                std::string_view coordinates)
      : file_(file), job_(job), dimensions_(dimensions), coordinates_(coordinates) {
    const std::string first =
        years_text({job.years.first, *job.options.variance_test - 1});
    const std::string second = years_text({*job.options.variance_test, job.years.last});
    reals_ = {
        add_real("f",
                 "larger variance over the smaller, of " + first + " and " + second),
        add_real("probability",
                 "two-sided probability of so large a ratio under equal variances")};
    counts_ = {
        add_count("n1", "number of values, " + first),
        add_count("n2", "number of values, " + second),
        add_count("adjusted_n1", "count adjusted for kurtosis, " + first),
        add_count("adjusted_n2", "count adjusted for kurtosis, " + second),
    };
  }

  // Adds the next cell.
  void add(std::span<const std::int16_t> series) {
    const VarianceResult result =
        test_variance(series, second_period(job_), job_.input.entry);
    add_values({result.f, result.probability},
               {result.n1, result.n2, result.adjusted_n1, result.adjusted_n2});
  }
  void add_without_data() {
    constexpr float kNone = NetcdfFile::kFillFloat;
    constexpr std::int32_t kFillCount = NetcdfFile::kFillInt;
    add_values({kNone, kNone}, {kFillCount, kFillCount, kFillCount, kFillCount});
  }

  // Writes the cells added so far. Call after the last definition.
  void put() {
    for (std::size_t i = 0; i < reals_.size(); ++i) {
      file_.put(reals_[i], real_values_[i]);
    }
    for (std::size_t i = 0; i < counts_.size(); ++i) {
      file_.put(counts_[i], count_values_[i]);
    }
  }

 private:
  static constexpr std::size_t kReals = 2;
  static constexpr std::size_t kCounts = 4;

  int add_real(std::string_view name, const std::string& long_name) {
    const int variable =
        file_.add_variable(name, NetcdfFile::Type::kFloat, dimensions_);
    file_.set_fill_value(variable, NetcdfFile::kFillFloat);
    describe(variable, long_name);
    return variable;
  }

  int add_count(std::string_view name, const std::string& long_name) {
    const int variable = file_.add_variable(name, NetcdfFile::Type::kInt, dimensions_);
    file_.set_fill_value(variable, NetcdfFile::kFillInt);
    describe(variable, long_name);
    return variable;
  }

  void describe(int variable, const std::string& long_name) {
    file_.compress(variable, job_.options.deflate);
    file_.add_text(variable, "long_name", long_name);
    file_.add_text(variable, "units", "1");
    file_.add_text(variable, "coordinates", coordinates_);
  }

  void add_values(const std::array<float, kReals>& reals,
                  const std::array<std::int32_t, kCounts>& counts) {
    for (std::size_t i = 0; i < kReals; ++i) {
      real_values_[i].push_back(reals[i]);
    }
    for (std::size_t i = 0; i < kCounts; ++i) {
      count_values_[i].push_back(counts[i]);
    }
  }

  NetcdfFile& file_;
  const Job& job_;
  std::span<const int> dimensions_;
  std::string_view coordinates_;
  std::array<int, kReals> reals_{};
  std::array<int, kCounts> counts_{};
  std::array<std::vector<float>, kReals> real_values_;
  std::array<std::vector<std::int32_t>, kCounts> count_values_;
};

}  // namespace

void write_netcdf_grid_tests(const Job& job, const BoxCells& box,
                             const SeriesBlock& block) {
  NetcdfFile file(*job.options.output, if_output_exists(job.options));
  const int bounds = file.add_dimension("bnds", 2);
  const NetcdfAxis lat(file, "lat", latitudes_of(job, box), bounds);
  const NetcdfAxis lon(file, "lon", longitudes_of(box), bounds);
  const std::array dimensions{lat.dimension(), lon.dimension()};
  TestVariables tests(file, job, dimensions, "");
  describe_file(file, job);
  lat.put(file);
  lon.put(file);
  for (const Cell& cell : box.cells) {
    const std::span<const std::int16_t> series = block.series(cell);
    if (has_data(job, series)) {
      tests.add(series);
    } else {
      tests.add_without_data();
    }
  }
  tests.put();
  file.complete();
}

void write_netcdf_site_tests(const Job& job, const SiteTable& table,
                             std::span<const SiteSeries> sites) {
  NetcdfFile file(*job.options.output, if_output_exists(job.options));
  const std::array dimensions{file.add_dimension("site", sites.size())};
  const NetcdfSiteTable columns(file, table, dimensions.front());
  TestVariables tests(file, job, dimensions, NetcdfSiteTable::kCoordinates);
  describe_file(file, job);
  columns.put(file, job, sites);
  for (const SiteSeries& site : sites) {
    tests.add(site.series);
  }
  tests.put();
  file.complete();
}

}  // namespace veldmark::extract
