// Passes each cell of a search that is to be saved to the outputs.

#ifndef VELDMARK_OUTPUT_SAVE_CELLS_H_
#define VELDMARK_OUTPUT_SAVE_CELLS_H_

#include <cstdint>
#include <span>
#include <string>

#include "catalogue/grid_values.h"
#include "grid/grid_layout.h"
#include "selection/lattice.h"

namespace veldmark {

// A longitude or latitude, with its text, which is formatted once for all cells of a
// column or row.
struct Coordinate {
  explicit Coordinate(float value);

  float degrees;     // north and east positive
  std::string text;  // nine characters, three decimals, as in the files
};

// A cell with data that is saved. Its references and series are valid only during
// CellSink::add.
struct SavedCell {
  std::int32_t number;  // counted from 1
  std::int32_t GridX;
  std::int32_t GridY;
  const Coordinate& longitude;
  const Coordinate& latitude;
  std::span<const std::int16_t> series;  // stored units, from January of FYOD
};

// An output that receives the saved cells: a file, or the table on the console.
class CellSink {
 public:
  // Receives the next cell. May throw, which ends save_cells.
  virtual void add(const SavedCell& cell) = 0;

  CellSink() = default;
  CellSink(const CellSink&) = delete;
  CellSink& operator=(const CellSink&) = delete;
  CellSink(CellSink&&) = delete;
  CellSink& operator=(CellSink&&) = delete;
  virtual ~CellSink() = default;
};

// Passes every cell of the lattice that has data to each of `sinks` in turn: row by
// row, and in each row by column, in the order of the lattice.
//
// Returns the number of saved cells (CellsSaved). Throws what a sink throws.
std::int32_t save_cells(const GridValues& values, const Lattice& lattice,
                        RowOrder order, std::span<CellSink* const> sinks);

}  // namespace veldmark

#endif  // VELDMARK_OUTPUT_SAVE_CELLS_H_
