// The cells around a point, for sites whose own cell has no data.

#ifndef VELDMARK_EXTRACT_NEAREST_CELL_H_
#define VELDMARK_EXTRACT_NEAREST_CELL_H_

#include <functional>
#include <optional>
#include <vector>

#include "extract/place.h"

namespace veldmark::extract {

// Returns the cells whose centres are at most `radius_km` away from `point`, in no
// particular order.
std::vector<Cell> cells_around(const Point& point, double radius_km, RowOrder order);

// Returns the cell whose centre is nearest to `point` among those for which `has_data`
// returns true; nullopt if there is none within `radius_km`. Of cells at the same
// distance, to the millimetre, the southernmost is taken, then the westernmost.
std::optional<Cell> nearest_cell(const Point& point, double radius_km, RowOrder order,
                                 const std::function<bool(const Cell&)>& has_data);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_NEAREST_CELL_H_
