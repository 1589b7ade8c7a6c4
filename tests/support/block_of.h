// The block that a reader returns, in a form that can be compared.

#ifndef VELDMARK_TESTS_SUPPORT_BLOCK_OF_H_
#define VELDMARK_TESTS_SUPPORT_BLOCK_OF_H_

#include <cstddef>
#include <cstdint>

#include "catalogue/grid_values.h"
#include "catalogue/read_fault.h"
#include "grid/grid_layout.h"
#include "support/fault_of.h"
#include "support/plain/reading.h"

namespace veldmark::testing {

inline plain::Block block_of(const GridValues& values) {
  plain::Block block;
  for (std::int32_t row = 1; row <= kGridRows; ++row) {
    const auto columns = values.data_columns(row);
    for (std::size_t i = 0; i < columns.size(); ++i) {
      auto& series = block.cells[{row, columns[i]}];
      for (std::size_t month = 0; month < values.month_count(); ++month) {
        series.push_back(values.month_of_row(month, row)[i]);
      }
    }
  }
  return block;
}

// Returns the values that `read` returns, or the fault that it throws.
template <typename Read>
plain::Block block_of_reading(Read read) {
  try {
    return block_of(read());
  } catch (const ReadFault& fault) {
    return {text_of(fault), {}};
  }
}

}  // namespace veldmark::testing

#endif  // VELDMARK_TESTS_SUPPORT_BLOCK_OF_H_
