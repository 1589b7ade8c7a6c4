#include "output/time_series_output.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <span>
#include <vector>

#include "output/six_columns.h"
#include "util/fixed_field.h"

namespace veldmark {
namespace {

constexpr int kMargin = 1;
constexpr int kTableMargin = 2;

// A coordinate of the lattice with the texts that every cell there shares, so that they
// are made once and not for each cell.
struct Coordinate {
  explicit Coordinate(float value)
      : degrees(value),
        in_files(fixed_real(value, 9, 3)),
        in_table(fixed_real(value, 10, 3)) {}

  float degrees;
  std::string in_files;
  std::string in_table;
};

// A year line: a blank and the year in four columns, twelve values, the line end.
constexpr std::size_t kYearTextSize = 5;
constexpr std::size_t kYearLineSize =
    kYearTextSize + kMonthsPerYear * SixColumns::kWidth + 1;

// All years of a cell fit into what a file gives room for at once.
static_assert((kLastDataYear - kFirstDataYear + 1) * kYearLineSize +
                  SixColumns::kCopied <=
              OutputFile::kMostReserved);

using YearText = std::array<char, kYearTextSize>;

// Writes the cells of a search, one after another.
class CellWriter {
 public:
  CellWriter(ConsoleDialogue& console, const SaveRequest& request,
             OutputFile& time_series, OutputFile& cell_list)
      : console_(console),
        request_(request),
        time_series_(time_series),
        cell_list_(cell_list),
        list_gap_(request.CrossesDateLine ? "" : "   ") {
    for (std::int32_t year = 0; year < request.years.YearCount(); ++year) {
      const std::string text = " " + fixed_integer(request.years.FYOD + year, 4);
      YearText& year_text = year_texts_.emplace_back();
      std::copy(text.begin(), text.end(), year_text.begin());
    }
  }

  // `series` holds all months, January of FYOD first.
  void write_cell(const Coordinate& longitude, const Coordinate& latitude,
                  std::span<const std::int16_t> series) {
    ++CellsSaved_;
    const VariableEntry& entry = request_.entry;
    const std::string prefix(entry.OutputPrefix.view());
    const std::string title(entry.TitleText.view());
    const std::string heading =
        " " + longitude.in_files + latitude.in_files + "    " + prefix;
    cell_list_.write(heading + list_gap_ + title + "\n");
    console_.write_line(kTableMargin, fixed_integer(CellsSaved_, 6) +
                                          longitude.in_table + latitude.in_table +
                                          "   " + prefix + "   " + title);
    time_series_.write(heading + title + std::string(entry.RFMT.view()) + "\n");
    write_years(series);
  }

  [[nodiscard]] std::int32_t CellsSaved() const { return CellsSaved_; }

 private:
  // The year lines of a cell, in one piece of the file's own memory.
  void write_years(std::span<const std::int16_t> series) {
    const std::size_t size = year_texts_.size() * kYearLineSize;
    char* out = time_series_.reserve(size + SixColumns::kCopied);
    const std::int16_t* value = series.data();
    for (const YearText& year_text : year_texts_) {
      std::memcpy(out, year_text.data(), kYearTextSize);
      out += kYearTextSize;
      for (std::int32_t month = 0; month < kMonthsPerYear; ++month) {
        out = six_columns_.write(*value, out);
        ++value;
      }
      *out = '\n';
      ++out;
    }
    time_series_.commit(size);
  }

  ConsoleDialogue& console_;
  const SaveRequest& request_;
  OutputFile& time_series_;
  OutputFile& cell_list_;
  std::string list_gap_;
  std::vector<YearText> year_texts_;
  SixColumns six_columns_;
  std::int32_t CellsSaved_ = 0;
};

void start_table(ConsoleDialogue& console, const YearSpan& years) {
  console.blank_line();
  console.write_line(kTableMargin,
                     "Saving Cell data : " + fixed_integer(years.FYOD, 4) + " - " +
                         fixed_integer(years.LYOD, 4));
  console.write_line(kTableMargin, "   #    longitude latitude   dattype       title");
}

// One row's cells, found by their column.
class RowSeries {
 public:
  // Turns the row's values into series.
  RowSeries(const GridValues& values, std::int32_t row,
            std::vector<std::int16_t>& memory)
      : columns_(values.data_columns(row)),
        month_count_(values.month_count()),
        series_(memory) {
    turn_row(values, row, memory);
  }

  // The series of the cell in `column`; empty when the cell has no data.
  [[nodiscard]] std::span<const std::int16_t> of(std::int32_t column) const {
    const auto found = std::lower_bound(columns_.begin(), columns_.end(), column);
    if (found == columns_.end() || *found != column) {
      return {};
    }
    const auto index = static_cast<std::size_t>(found - columns_.begin());
    return std::span(series_).subspan(index * month_count_, month_count_);
  }

 private:
  std::span<const std::int32_t> columns_;
  std::size_t month_count_;
  const std::vector<std::int16_t>& series_;
};

}  // namespace

std::int32_t save_cells(ConsoleDialogue& console, const SaveRequest& request,
                        const std::string& TsfName, OutputFile& time_series,
                        OutputFile& cell_list,
                        std::optional<VarianceReport>& variance_report) {
  start_table(console, request.years);
  cell_list.write(" #   Lon.     Lat.      " + TsfName + "\n");
  std::vector<Coordinate> longitudes;
  for (const std::int32_t column : request.lattice.columns) {
    longitudes.emplace_back(CellLon[column]);
  }
  CellWriter writer(console, request, time_series, cell_list);
  std::vector<std::int16_t> memory;
  for (const std::int32_t row : request.lattice.rows) {
    const Coordinate latitude(CellLat(request.order)[row]);
    const RowSeries row_series(request.values, row, memory);
    for (std::size_t i = 0; i < longitudes.size(); ++i) {
      const std::span<const std::int16_t> series =
          row_series.of(request.lattice.columns[i]);
      if (series.empty()) {
        continue;
      }
      if (variance_report) {
        variance_report->add_cell(console, {longitudes[i].degrees, latitude.degrees},
                                  series);
      }
      writer.write_cell(longitudes[i], latitude, series);
    }
  }
  return writer.CellsSaved();
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
