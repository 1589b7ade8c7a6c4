// A published netCDF file to its condensed copy.

#ifndef VELDMARK_TERSIFY_CONDENSE_NETCDF_H_
#define VELDMARK_TERSIFY_CONDENSE_NETCDF_H_

#include <string>

#include "tersify/condense_job.h"

namespace veldmark::tersify {

// Condenses a netCDF file. The copy appears under its name when it is complete.
//
//   path    the file to read: the job's own, or its decompressed copy
//
// Throws Failure that names the job's file, and what was found and expected in it;
// Interrupted when an InterruptWatch catches a signal. No part of a copy stays then,
// and an earlier copy does. A tersify that was built without netCDF says so.
Condensed condense_netcdf(const std::string& path, const CondenseJob& job);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_CONDENSE_NETCDF_H_
