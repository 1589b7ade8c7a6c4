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

// Which cells of a block have data in its first month, and where their values lie.
struct BlockLayout {
  std::size_t month_count{};
  std::vector<std::int32_t> rows;     // ascending
  std::vector<std::size_t> begin;     // offset of each row in columns, plus the end
  std::vector<std::int32_t> columns;  // ascending in each row

  // The columns of rows[index].
  [[nodiscard]] std::span<const std::int32_t> columns_of_row(std::size_t index) const {
    return std::span(columns).subspan(begin[index], begin[index + 1] - begin[index]);
  }
};

// The series of cells without data in the first month, but with data later. They are
// rare: in CRU TS the same cells have data in every month.
using LateStarts = std::map<Cell, std::vector<std::int16_t>>;

// Series in stored units, the missing code in months without data. Cells are found by
// row and column in the order of the file.
class SeriesBlock {
 public:
  // Returns the series of `cell`, January of the first year first; empty when the cell
  // has no data in any month or was not asked for.
  [[nodiscard]] std::span<const std::int16_t> series(const Cell& cell) const;

  [[nodiscard]] std::size_t month_count() const { return layout_.month_count; }

 private:
  friend class BlockReader;

  BlockLayout layout_;
  LargeBuffer values_;  // [cell][month] when complete
  LateStarts late_starts_;
};

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_SERIES_BLOCK_H_
