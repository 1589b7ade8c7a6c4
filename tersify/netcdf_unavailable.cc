// Replaces the reading of netCDF where tersify is built without the library.

#include "tersify/condense_netcdf.h"
#include "util/failure.h"
#include "util/in_quotes.h"

namespace veldmark::tersify {

Condensed condense_netcdf(const std::string& /*path*/, const CondenseJob& job) {
  throw Failure(in_quotes(job.name) +
                " is netCDF, and this tersify was built without netCDF");
}

}  // namespace veldmark::tersify
