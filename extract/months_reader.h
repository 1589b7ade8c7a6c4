// Reads months of chosen cells into a block.

#ifndef VELDMARK_EXTRACT_MONTHS_READER_H_
#define VELDMARK_EXTRACT_MONTHS_READER_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/row_plan.h"
#include "extract/cell_set.h"
#include "extract/framed_lines.h"
#include "extract/input_file.h"
#include "extract/series_block.h"

namespace veldmark::extract {

// Months are counted from 0, January of the first year. Every member function throws
// the Failures of read_cells (block_reader.h).
class MonthsReader {
 public:
  // Requires that the file holds `years` and that all arguments outlive this object.
  MonthsReader(const InputFile& input, const CellSet& cells, const Years& years,
               const Progress& progress);

  // Returns the layout of the cells that have data in the first month; the caller sets
  // its month_count.
  BlockLayout find_cells();

  // Reads the months [first, end) into `values`, where the values of each row are laid
  // out as [month][cell].
  // Returns the series of the cells that have data in these months, but not in month 0.
  LateStarts read(const BlockLayout& layout, std::size_t first, std::size_t end,
                  std::int16_t* values);

 private:
  [[nodiscard]] RowPlan plan_of(const BlockLayout& layout, std::size_t index) const;
  void read_line(const BlockLayout& layout, std::size_t month, std::size_t index,
                 std::string_view line, std::int16_t* values);
  bool read_fields(std::size_t month, std::size_t index, std::string_view line,
                   const RowPlan& plan, std::int16_t* values) const;
  void find_late_starts(const BlockLayout& layout, std::size_t index,
                        std::string_view line);
  void read_late_starts(const BlockLayout& layout, std::size_t month, std::size_t index,
                        std::string_view line);
  void require_valid_fields(std::size_t month, std::size_t index, std::string_view line,
                            std::span<const std::int32_t> columns) const;

  const CellSet& cells_;
  FramedLines lines_;
  std::int16_t MissingCode_;
  std::string missing_;         // a line of missing codes
  std::vector<RowPlan> plans_;  // one per row
  std::vector<std::vector<std::int32_t>> late_start_columns_;  // one per row
  LateStarts late_starts_;
};

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_MONTHS_READER_H_
