#include "catalogue/read_block.h"

#include <optional>
#include <utility>

#include "catalogue/line_by_line_reader.h"
#include "catalogue/regular_reader.h"

namespace veldmark {

GridValues read_block(GridFile file, const BlockRequest& request) {
  const GridFile open_file = std::move(file);  // closed on return
  std::optional<GridValues> values = read_regular(open_file, request);
  if (!values) {
    values = read_line_by_line(open_file, request);
  }
  return std::move(*values);
}

}  // namespace veldmark
