#include "extract/cell_set.h"

#include <algorithm>

namespace veldmark::extract {

CellSet::CellSet(std::vector<Cell> cells) {
  if (!std::is_sorted(cells.begin(), cells.end())) {
    std::sort(cells.begin(), cells.end());
  }
  cells.erase(std::unique(cells.begin(), cells.end()), cells.end());
  for (const Cell& cell : cells) {
    if (rows_.empty() || rows_.back() != cell.GridY) {
      rows_.push_back(cell.GridY);
      begin_.push_back(columns_.size());
    }
    columns_.push_back(cell.GridX);
  }
  begin_.push_back(columns_.size());
}

std::span<const std::int32_t> CellSet::columns(std::size_t index) const {
  return std::span(columns_).subspan(begin_[index], begin_[index + 1] - begin_[index]);
}

}  // namespace veldmark::extract
