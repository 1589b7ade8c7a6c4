#include "extract/series_block.h"

#include <algorithm>

namespace veldmark::extract {

std::span<const std::int16_t> SeriesBlock::series(const Cell& cell) const {
  const auto row = std::lower_bound(rows_.begin(), rows_.end(), cell.GridY);
  if (row != rows_.end() && *row == cell.GridY) {
    const auto index = static_cast<std::size_t>(row - rows_.begin());
    const auto begin = columns_.begin() + static_cast<std::ptrdiff_t>(begin_[index]);
    const auto end = columns_.begin() + static_cast<std::ptrdiff_t>(begin_[index + 1]);
    const auto found = std::lower_bound(begin, end, cell.GridX);
    if (found != end && *found == cell.GridX) {
      const auto place = static_cast<std::size_t>(found - columns_.begin());
      return {values_.data() + place * month_count_, month_count_};
    }
  }
  const auto late = late_cells_.find(cell);
  return late == late_cells_.end() ? std::span<const std::int16_t>() : late->second;
}

}  // namespace veldmark::extract
