#include "output/time_series_output.h"

#include "util/fixed_field.h"

namespace veldmark {
namespace {

constexpr int kMargin = 1;
constexpr int kTableMargin = 2;

void start_table(ConsoleDialogue& console, const YearSpan& years) {
  console.blank_line();
  console.write_line(kTableMargin,
                     "Saving Cell data : " + fixed_integer(years.FYOD, 4) + " - " +
                         fixed_integer(years.LYOD, 4));
  console.write_line(kTableMargin, "   #    longitude latitude   dattype       title");
}

void write_table_line(ConsoleDialogue& console, const Cell& cell,
                      const VariableEntry& entry, std::int32_t CellsSaved) {
  console.write_line(kTableMargin, fixed_integer(CellsSaved, 6) +
                                       fixed_real(cell.longitude, 10, 3) +
                                       fixed_real(cell.latitude, 10, 3) + "   " +
                                       entry.OutputPrefix + "   " + entry.TitleText);
}

// How cells are headed in both files: one blank, longitude, latitude, four blanks and
// the prefix.
std::string cell_heading(const Cell& cell, const VariableEntry& entry) {
  return " " + fixed_real(cell.longitude, 9, 3) + fixed_real(cell.latitude, 9, 3) +
         "    " + entry.OutputPrefix;
}

void write_list_line(OutputFile& cell_list, const Cell& cell,
                     const SaveRequest& request) {
  const std::string gap = request.CrossesDateLine ? "" : "   ";
  cell_list.write(cell_heading(cell, request.entry) + gap + request.entry.TitleText +
                  "\n");
}

std::string year_line(const SaveRequest& request, const Cell& cell, std::int32_t year) {
  std::string line = " " + fixed_integer(request.years.FYOD + year - 1, 4);
  for (std::int32_t month = 1; month <= kMonthsPerYear; ++month) {
    line += fixed_integer(request.values.at(year, month, cell.row, cell.column), 6);
  }
  return line + "\n";
}

void write_series(OutputFile& time_series, const Cell& cell,
                  const SaveRequest& request) {
  const VariableEntry& entry = request.entry;
  time_series.write(cell_heading(cell, entry) + entry.TitleText + entry.RFMT + "\n");
  for (std::int32_t year = 1; year <= request.years.YearCount(); ++year) {
    time_series.write(year_line(request, cell, year));
  }
}

}  // namespace

std::int32_t save_cells(ConsoleDialogue& console, const SaveRequest& request,
                        const std::string& TsfName, OutputFile& time_series,
                        OutputFile& cell_list,
                        std::optional<VarianceReport>& variance_report) {
  start_table(console, request.years);
  cell_list.write(" #   Lon.     Lat.      " + TsfName + "\n");
  std::int32_t CellsSaved = 0;
  for (const std::int32_t row : request.lattice.rows) {
    for (const std::int32_t column : request.lattice.columns) {
      if (!request.values.has_data(row, column, request.MissingCode)) {
        continue;
      }
      const Cell cell{row, column, cell_longitude(column),
                      cell_latitude(row, request.order)};
      if (variance_report) {
        variance_report->add_cell(console, request.values, cell);
      }
      ++CellsSaved;
      write_list_line(cell_list, cell, request);
      write_table_line(console, cell, request.entry, CellsSaved);
      write_series(time_series, cell, request);
    }
  }
  return CellsSaved;
}

void write_summary(ConsoleDialogue& console, std::int32_t CellsDefined,
                   std::int32_t CellsSaved, const std::string& TsfName) {
  console.blank_line();
  console.blank_line();
  console.write_line(kMargin, "PROGRAM TERMINATING NORMALLY");
  console.write_line(kMargin, fixed_integer(CellsDefined, 10) + " Grids Defined");
  console.write_line(kMargin,
                     fixed_integer(CellsSaved, 10) + " Grids Selected and Saved");
  console.write_line(kMargin, "Output is in file " + TsfName);
}

}  // namespace veldmark
