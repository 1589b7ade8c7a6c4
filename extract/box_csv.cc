#include "extract/box_csv.h"

#include <cstdint>

#include "catalogue/variable_name.h"
#include "extract/csv_series.h"
#include "extract/decimal_text.h"
#include "extract/output_names.h"
#include "extract/text_output.h"
#include "extract/value_texts.h"
#include "extract/variance_columns.h"
#include "grid/grid_layout.h"

namespace veldmark::extract {
namespace {

// "60.25,-139.75,"
std::string place_columns(const Cell& cell, RowOrder order) {
  const Point centre = centre_of(cell, order);
  return short_decimal_text(centre.latitude) + "," +
         short_decimal_text(centre.longitude) + ",";
}

void write_series(const Job& job, const BoxCells& box, const SeriesBlock& block,
                  TextOutput& output) {
  const VariableEntry& entry = job.input.entry;
  const ValueTexts texts(job.options.stored ? 0 : decimals_of(entry),
                         entry.MissingCode);
  output.write("lat,lon,");
  output.write(csv_series_heading(job.options.wide));
  output.write("\n");
  CsvSeries csv(output, texts, job.years, job.options.wide);
  for_each_series(job, box.cells, block,
                  [&](const Cell& cell, std::span<const std::int16_t> series) {
                    csv.write(place_columns(cell, entry.row_order), series);
                  });
}

void write_tests(const Job& job, const BoxCells& box, const SeriesBlock& block,
                 TextOutput& output) {
  const VariableEntry& entry = job.input.entry;
  output.write("lat,lon,");
  output.write(kVarianceHeading);
  output.write("\n");
  for_each_series(job, box.cells, block,
                  [&](const Cell& cell, std::span<const std::int16_t> series) {
                    output.write(place_columns(cell, entry.row_order));
                    output.write(variance_columns(
                        test_variance(series, second_period(job), entry)));
                    output.write("\n");
                  });
}

}  // namespace

void write_box_csv(const Job& job, const BoxCells& box, const SeriesBlock& block) {
  TextOutput output(job.options.output, if_output_exists(job.options));
  if (job.options.variance_test) {
    write_tests(job, box, block, output);
  } else {
    write_series(job, box, block, output);
  }
  output.complete();
}

void write_area_mean_csv(const Job& job, const AreaMean& mean) {
  TextOutput output(job.options.output, if_output_exists(job.options));
  output.write("year,month,value,cells\n");
  for (std::size_t month = 0; month < mean.month_count(); ++month) {
    const auto number = static_cast<std::int32_t>(month);
    output.write(std::to_string(job.years.first + number / kMonthsPerYear) + "," +
                 std::to_string(number % kMonthsPerYear + 1) + "," +
                 mean.mean_text(month, decimals_of(job.input.entry)) + "," +
                 std::to_string(mean.cells(month)) + "\n");
  }
  output.complete();
}

}  // namespace veldmark::extract
