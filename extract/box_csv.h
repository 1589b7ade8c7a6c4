// Writes the extraction of a box as CSV.

#ifndef VELDMARK_EXTRACT_BOX_CSV_H_
#define VELDMARK_EXTRACT_BOX_CSV_H_

#include "extract/area_mean.h"
#include "extract/box_cells.h"
#include "extract/job.h"

namespace veldmark::extract {

// Writes the series of the cells with data or, if requested, their variance test.
// Throws Failure.
void write_box_csv(const Job& job, const BoxCells& box, const SeriesBlock& block);

// Writes the area mean of each month. Throws Failure.
void write_area_mean_csv(const Job& job, const AreaMean& mean);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_BOX_CSV_H_
