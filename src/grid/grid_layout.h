// The layout of a grid file, and the years that this release of the data covers.
// All code that reads, writes or checks grid files takes its numbers from here.
//
// A file holds one line per row and month: years ascending from 1901, January to
// December in each year, rows 1 to 360 in each month. A line has 720 fields of five
// characters, without separators.

#ifndef VELDMARK_GRID_GRID_LAYOUT_H_
#define VELDMARK_GRID_GRID_LAYOUT_H_

#include <cstddef>
#include <cstdint>

namespace veldmark {

// Columns are numbered by GridX and rows by GridY, both from 1.
constexpr std::int32_t kGridColumns = 720;
constexpr std::int32_t kGridRows = 360;
constexpr std::int32_t kMonthsPerYear = 12;
constexpr std::int32_t kLinesPerYear = kMonthsPerYear * kGridRows;

// Centres of the westernmost column and the southernmost row, and the distance between
// neighbouring centres, in degrees. All centres are exact in binary.
constexpr float kWesternmostCentre = -179.75F;
constexpr float kSouthernmostCentre = -89.75F;
constexpr float kCellSize = 0.5F;

constexpr std::size_t kFieldWidth = 5;                           // characters
constexpr std::size_t kLineLength = kFieldWidth * kGridColumns;  // without newline

// First and last year of the data, both included. CRU TS 4.01 ends in 2016.
constexpr std::int32_t kFirstDataYear = 1901;
constexpr std::int32_t kLastDataYear = 2016;

// The order of a file's rows: row 1 is the southernmost in the CRU TS files and the
// northernmost in the scPDSI file.
enum class RowOrder { kSouthFirst, kNorthFirst };

// Returns the number (from 1) of the line that holds row `GridY` (1..360) of `month`
// (1..12) of `year` (1901 or later).
constexpr std::int64_t line_number(std::int32_t year, std::int32_t month,
                                   std::int32_t GridY) {
  return std::int64_t{year - kFirstDataYear} * kLinesPerYear +
         std::int64_t{month - 1} * kGridRows + GridY;
}

}  // namespace veldmark

#endif  // VELDMARK_GRID_GRID_LAYOUT_H_
