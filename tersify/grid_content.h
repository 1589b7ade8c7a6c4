// Checks the values of a well-formed condensed file for implausible content: a lost or
// duplicated row, rows in the wrong order.

#ifndef VELDMARK_TERSIFY_GRID_CONTENT_H_
#define VELDMARK_TERSIFY_GRID_CONTENT_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tersify/grid_shape.h"

namespace veldmark::tersify {

// The check relies on two facts: the same cells have values in every month, and
// Antarctica has none. The missing code is taken from the file's first field, which is
// at a pole: -999 in the CRU TS files, whose rows run south to north, and -9999 in the
// scPDSI file, whose rows run north to south. A file that begins with any other value
// is not checked.
class GridContent {
 public:
  explicit GridContent(const GridShape& shape);

  // Adds the next line. Requires all lines in file order.
  //
  //   line    counted from 1
  //   text    without newline, of exactly the shape's fields
  void add_line(std::int64_t line, std::string_view text);

  // Returns one sentence for each kind of problem, about the first place it occurs at.
  [[nodiscard]] std::vector<std::string> warnings() const;

 private:
  using Word = std::uint64_t;

  void find_values(std::string_view text);
  void take_as_first(std::int64_t line);
  void compare_with_first(std::int64_t line);

  GridShape shape_;
  std::string missing_;  // the field of a missing value; empty if unknown: no check
  std::vector<std::vector<Word>> first_month_;  // by row, a bit per cell: has a value
  std::vector<Word> row_;                       // the same, of the line just added
  std::string other_cells_;  // warning: values in other cells than in the first month
  std::string wrong_order_;  // warning: values in Antarctica; both empty if none
};

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_GRID_CONTENT_H_
