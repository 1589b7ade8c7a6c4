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

// Months are counted from 0, January of the first year. Every member throws Failure
// that names line, characters and text when a field of a cell is no integer or too
// large for 16 bits, when a line has no line end in its place, and when the system
// fails to read.
class MonthsReader {
 public:
  // For the lines of `cells` in `years`, which the file holds. All must outlive this.
  MonthsReader(const InputFile& input, const CellSet& cells, const Years& years,
               const Progress& progress);

  // Finds the cells that have data in the first month. The number of months is left
  // for the caller to set.
  BlockLayout find_cells();

  // Reads the months from `first` to before `end` into `values`, where those of a row
  // lie as [month][cell].
  // Returns the cells that have data in these months and not in the first of all.
  LateCells read(const BlockLayout& layout, std::size_t first, std::size_t end,
                 std::int16_t* values);

 private:
  [[nodiscard]] RowPlan plan_of(const BlockLayout& layout, std::size_t index) const;
  void read_line(const BlockLayout& layout, std::size_t month, std::size_t index,
                 std::string_view line, std::int16_t* values);
  bool read_fields(std::size_t month, std::size_t index, std::string_view line,
                   const RowPlan& plan, std::int16_t* values) const;
  void find_late_cells(const BlockLayout& layout, std::size_t index,
                       std::string_view line);
  void keep_late_cells(const BlockLayout& layout, std::size_t month, std::size_t index,
                       std::string_view line);
  void expect_sound_fields(std::size_t month, std::size_t index, std::string_view line,
                           std::span<const std::int32_t> columns) const;

  const CellSet& cells_;
  FramedLines lines_;
  std::int16_t MissingCode_;
  std::string missing_;                                  // a line of missing codes
  std::vector<RowPlan> plans_;                           // of the rows
  std::vector<std::vector<std::int32_t>> late_columns_;  // of the rows
  LateCells late_cells_;
};

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_MONTHS_READER_H_
