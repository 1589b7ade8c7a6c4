// Makes the condensed copy of a compressed published file, text or netCDF.

#ifndef VELDMARK_TERSIFY_CONDENSE_GZIP_H_
#define VELDMARK_TERSIFY_CONDENSE_GZIP_H_

#include "companion/input_file.h"
#include "tersify/condense_job.h"

namespace veldmark::tersify {

// Condenses a gzip file; see condense_file. Text is condensed while it is decompressed.
// The netCDF library can't read from a stream: netCDF is decompressed to a temporary
// file beside the copy, NAME.new.nc.part, which is removed afterwards.
//
//   input    the job's file, at its beginning
//
// Throws as condense_file, and Failure if the file is damaged or cut off. Damage takes
// precedence over the invalid text that it causes.
Condensed condense_gzip(const CondenseJob& job, const companion::InputFile& input);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_CONDENSE_GZIP_H_
