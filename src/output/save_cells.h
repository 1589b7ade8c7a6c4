// The walk over a search's kept cells: each cell with data is handed to every sink.

#ifndef VELDMARK_OUTPUT_SAVE_CELLS_H_
#define VELDMARK_OUTPUT_SAVE_CELLS_H_

#include <cstdint>
#include <span>
#include <string>

#include "catalogue/grid_values.h"
#include "grid/grid_layout.h"
#include "selection/lattice.h"

namespace veldmark {

// A longitude or latitude of cells, degrees, north and east positive. Its text is made
// once for all cells that share it.
struct Coordinate {
  // From degrees.
  explicit Coordinate(float value);

  float degrees;
  std::string text;  // nine columns, three decimals, as the files show it
};

// A kept cell that has data. Refers to values that live as long as the sink is called.
struct SavedCell {
  std::int32_t number;  // counted from 1
  std::int32_t GridX;
  std::int32_t GridY;
  const Coordinate& longitude;
  const Coordinate& latitude;
  std::span<const std::int16_t> series;  // stored units, from January of FYOD
};

// What takes saved cells: a file, a table on the screen.
class CellSink {
 public:
  // Takes the next cell; may throw, which ends the walk.
  virtual void add(const SavedCell& cell) = 0;

  CellSink() = default;
  CellSink(const CellSink&) = delete;
  CellSink& operator=(const CellSink&) = delete;
  CellSink(CellSink&&) = delete;
  CellSink& operator=(CellSink&&) = delete;
  virtual ~CellSink() = default;
};

// Hands every cell of the lattice that has data to each of `sinks` in turn: rows
// upward, in each row the columns in the lattice's order.
//
// Returns how many cells were saved (CellsSaved). Throws what a sink throws.
std::int32_t save_cells(const GridValues& values, const Lattice& lattice,
                        RowOrder order, std::span<CellSink* const> sinks);

}  // namespace veldmark

#endif  // VELDMARK_OUTPUT_SAVE_CELLS_H_
