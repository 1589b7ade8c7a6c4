// A compressed published file to its condensed copy, be it text or netCDF.

#ifndef VELDMARK_TERSIFY_CONDENSE_GZIP_H_
#define VELDMARK_TERSIFY_CONDENSE_GZIP_H_

#include "companion/input_file.h"
#include "tersify/condense_job.h"

namespace veldmark::tersify {

// Condenses a gzip file; see condense_file. Text is condensed while it is decompressed.
// The netCDF library needs a file: it gets one beside the copy, NAME.new.nc.part, which
// is gone afterwards.
//
//   input    the job's file, at its beginning
//
// Throws besides Failure that the file is damaged or cut: where that shows first as
// text that makes no sense, the damage is what is told.
Condensed condense_gzip(const CondenseJob& job, const companion::InputFile& input);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_CONDENSE_GZIP_H_
