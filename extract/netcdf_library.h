// The netCDF C library, loaded on demand: with its dependencies, loading it takes
// longer than a small extraction.

#ifndef VELDMARK_EXTRACT_NETCDF_LIBRARY_H_
#define VELDMARK_EXTRACT_NETCDF_LIBRARY_H_

#include <netcdf.h>

namespace veldmark::extract {

// The functions that are used, under the library's own names.
struct NetcdfLibrary {
  decltype(&::nc_create) nc_create;
  decltype(&::nc_sync) nc_sync;
  decltype(&::nc_close) nc_close;
  decltype(&::nc_strerror) nc_strerror;
  decltype(&::nc_def_dim) nc_def_dim;
  decltype(&::nc_def_var) nc_def_var;
  decltype(&::nc_def_var_fill) nc_def_var_fill;
  decltype(&::nc_def_var_chunking) nc_def_var_chunking;
  decltype(&::nc_def_var_deflate) nc_def_var_deflate;
  decltype(&::nc_put_att_text) nc_put_att_text;
  decltype(&::nc_put_att_double) nc_put_att_double;
  decltype(&::nc_put_var_double) nc_put_var_double;
  decltype(&::nc_put_var_float) nc_put_var_float;
  decltype(&::nc_put_var_int) nc_put_var_int;
  decltype(&::nc_put_var_string) nc_put_var_string;
  decltype(&::nc_put_vara_short) nc_put_vara_short;
};

// Returns the library; the first call loads it.
// Throws Failure if it can't be loaded or lacks a function.
const NetcdfLibrary& netcdf_library();

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_NETCDF_LIBRARY_H_
