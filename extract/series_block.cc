#include "extract/series_block.h"

#include <algorithm>

namespace veldmark::extract {

std::span<const std::int16_t> SeriesBlock::series(const Cell& cell) const {
  const std::vector<std::int32_t>& rows = layout_.rows;
  const auto row = std::lower_bound(rows.begin(), rows.end(), cell.GridY);
  if (row != rows.end() && *row == cell.GridY) {
    const auto index = static_cast<std::size_t>(row - rows.begin());
    const std::span<const std::int32_t> columns = layout_.columns_of_row(index);
    const auto found = std::lower_bound(columns.begin(), columns.end(), cell.GridX);
    if (found != columns.end() && *found == cell.GridX) {
      const std::size_t place =
          layout_.begin[index] + static_cast<std::size_t>(found - columns.begin());
      return {values_.data() + place * month_count(), month_count()};
    }
  }
  const auto late = late_starts_.find(cell);
  return late == late_starts_.end() ? std::span<const std::int16_t>() : late->second;
}

}  // namespace veldmark::extract
