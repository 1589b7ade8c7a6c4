// Makes the condensed copy of a published netCDF file.

#ifndef VELDMARK_TERSIFY_CONDENSE_NETCDF_H_
#define VELDMARK_TERSIFY_CONDENSE_NETCDF_H_

#include <string>

#include "tersify/condense_job.h"

namespace veldmark::tersify {

// Throws Failure if tersify was built without netCDF.
void require_netcdf(const CondenseJob& job);

// Condenses a netCDF file. The copy appears under its name when it is complete.
//
//   path    the file to read: the job's own, or its decompressed copy
//
// Throws Failure that names the job's file and says what was found and expected, also
// if tersify was built without netCDF; Interrupted when an InterruptWatch catches a
// signal. After either, the part file is removed and an earlier copy is unchanged.
Condensed condense_netcdf(const std::string& path, const CondenseJob& job);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_CONDENSE_NETCDF_H_
