// The requested cells, row by row.

#ifndef VELDMARK_EXTRACT_CELL_SET_H_
#define VELDMARK_EXTRACT_CELL_SET_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "extract/place.h"

namespace veldmark::extract {

// Holds each cell once, rows ascending in the order of the file, columns ascending.
class CellSet {
 public:
  // Takes cells in any order; repeated ones count once.
  explicit CellSet(std::vector<Cell> cells);

  // The rows that have cells, ascending.
  [[nodiscard]] std::span<const std::int32_t> rows() const { return rows_; }

  // The columns of the cells in rows()[index], ascending.
  [[nodiscard]] std::span<const std::int32_t> columns(std::size_t index) const;

  [[nodiscard]] std::size_t size() const { return columns_.size(); }

 private:
  std::vector<std::int32_t> rows_;
  std::vector<std::size_t> begin_;  // offset of each row in columns_, plus the end
  std::vector<std::int32_t> columns_;
};

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_CELL_SET_H_
