// The monthly series that a run has read: those of the cells that have data in any
// month of the chosen years.

#ifndef VELDMARK_EXTRACT_SERIES_BLOCK_H_
#define VELDMARK_EXTRACT_SERIES_BLOCK_H_

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <vector>

#include "extract/place.h"
#include "util/large_buffer.h"

namespace veldmark::extract {

// Series in stored units, the missing code in months without data. Cells are found by
// row and column in the order of the file.
class SeriesBlock {
 public:
  // Returns the series of `cell`, January of the first year first; empty when the cell
  // has no data in any month or was not asked for.
  [[nodiscard]] std::span<const std::int16_t> series(const Cell& cell) const;

  [[nodiscard]] std::size_t month_count() const { return month_count_; }

  // How many cells have data.
  [[nodiscard]] std::size_t cell_count() const {
    return columns_.size() + late_cells_.size();
  }

 private:
  friend class BlockReader;

  std::size_t month_count_ = 0;
  std::vector<std::int32_t> rows_;
  std::vector<std::size_t> begin_;     // of each row in columns_, and the end
  std::vector<std::int32_t> columns_;  // of the cells with data in the first month
  LargeBuffer values_;                 // [cell][month] when complete

  // Cells that begin later. There are hardly any: CRU TS has the same cells in every
  // month.
  std::map<Cell, std::vector<std::int16_t>> late_cells_;
};

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_SERIES_BLOCK_H_
