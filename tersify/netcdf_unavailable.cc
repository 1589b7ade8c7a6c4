// Replaces the reading of netCDF where tersify is built without the library.

#include "tersify/condense_netcdf.h"
#include "util/failure.h"
#include "util/in_quotes.h"

namespace veldmark::tersify {
namespace {

[[noreturn]] void fail(const CondenseJob& job) {
  throw Failure(in_quotes(job.name) +
                " is netCDF, and this tersify was built without netCDF");
}

}  // namespace

void require_netcdf(const CondenseJob& job) { fail(job); }

Condensed condense_netcdf(const std::string& /*path*/, const CondenseJob& job) {
  fail(job);
}

}  // namespace veldmark::tersify
