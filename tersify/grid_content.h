// Looks at the values of a condensed file for what can hardly be, although every line
// is well formed: a row that was lost or doubled, rows in the wrong order.

#ifndef VELDMARK_TERSIFY_GRID_CONTENT_H_
#define VELDMARK_TERSIFY_GRID_CONTENT_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tersify/grid_shape.h"

namespace veldmark::tersify {

// The sea and Antarctica have no values in any month, and the land has values in all.
// The missing code is taken from the file's first field, which is at a pole: -999 in
// the files of CRU TS, whose rows run south to north, -9999 in the scPDSI file, whose
// rows run north to south. A file that begins otherwise is not looked at.
class GridContent {
 public:
  explicit GridContent(const GridShape& shape);

  // Takes in a line, all of which come one after the other.
  //
  //   line    from 1
  //   text    without line end, of just the fields of the shape
  void see(std::int64_t line, std::string_view text);

  // Returns a sentence for each kind of thing that can hardly be; about its first
  // place.
  [[nodiscard]] std::vector<std::string> warnings() const;

 private:
  using Word = std::uint64_t;

  void find_values(std::string_view text);
  void take_as_first(std::int64_t line);
  void compare_with_first(std::int64_t line);

  GridShape shape_;
  std::string missing_;  // text of a field without a value; empty when it is not known
  std::vector<std::vector<Word>> first_month_;  // of each row a bit for each value
  std::vector<Word> row_;                       // the same of the line seen last
  std::string other_cells_;                     // the warnings, empty for none
  std::string wrong_order_;
};

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_GRID_CONTENT_H_
