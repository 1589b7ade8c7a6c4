// The block of values that a search requests from a grid file.

#ifndef VELDMARK_CATALOGUE_BLOCK_REQUEST_H_
#define VELDMARK_CATALOGUE_BLOCK_REQUEST_H_

#include <cstdint>

#include "selection/grid_geometry.h"
#include "selection/search_region.h"

namespace veldmark {

struct BlockRequest {
  YearSpan years{};
  GridRanges ranges;
  std::int32_t MissingCode{};  // marks a cell without data
};

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_BLOCK_REQUEST_H_
