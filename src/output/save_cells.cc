#include "output/save_cells.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "selection/grid_geometry.h"
#include "util/fixed_field.h"

namespace veldmark {
namespace {

// The series of the cells in one row, by column.
class RowSeries {
 public:
  // Transposes the values of the row into `buffer`, which must outlive this object.
  RowSeries(const GridValues& values, std::int32_t GridY,
            std::vector<std::int16_t>& buffer)
      : columns_(values.data_columns(GridY)),
        month_count_(values.month_count()),
        series_(buffer) {
    transpose_row(values, GridY, buffer);
  }

  // Returns the series of the cell in column `GridX`; empty if the cell has no data.
  [[nodiscard]] std::span<const std::int16_t> at(std::int32_t GridX) const {
    const auto found = std::lower_bound(columns_.begin(), columns_.end(), GridX);
    if (found == columns_.end() || *found != GridX) {
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

Coordinate::Coordinate(float value) : degrees(value), text(fixed_real(value, 9, 3)) {}

std::int32_t save_cells(const GridValues& values, const Lattice& lattice,
                        RowOrder order, std::span<CellSink* const> sinks) {
  std::vector<Coordinate> longitudes;
  for (const std::int32_t GridX : lattice.columns) {
    longitudes.emplace_back(CellLon[GridX]);
  }
  std::int32_t CellsSaved = 0;
  std::vector<std::int16_t> buffer;
  for (const std::int32_t GridY : lattice.rows) {
    const Coordinate latitude(CellLat(order)[GridY]);
    const RowSeries row_series(values, GridY, buffer);
    for (std::size_t i = 0; i < longitudes.size(); ++i) {
      const std::int32_t GridX = lattice.columns[i];
      const std::span<const std::int16_t> series = row_series.at(GridX);
      if (series.empty()) {
        continue;
      }
      ++CellsSaved;
      const SavedCell cell{CellsSaved, GridX, GridY, longitudes[i], latitude, series};
      for (CellSink* const sink : sinks) {
        sink->add(cell);
      }
    }
  }
  return CellsSaved;
}

}  // namespace veldmark
