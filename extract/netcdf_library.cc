#include "extract/netcdf_library.h"

#include <dlfcn.h>

#include <string>

#include "util/failure.h"

namespace veldmark::extract {
namespace {

constexpr const char* kFile = VELDMARK_NETCDF_SONAME;

[[noreturn]] void fail() {
  throw Failure(std::string("cannot load the netCDF library: ") + ::dlerror());
}

// The library is never unloaded.
void* open_library() {
  void* library = ::dlopen(kFile, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) {
    fail();
  }
  return library;
}

template <typename Function>
void find(void* library, const char* name, Function& function) {
  void* address = ::dlsym(library, name);
  if (address == nullptr) {
    fail();
  }
  function = reinterpret_cast<Function>(address);
}

NetcdfLibrary load() {
  void* library = open_library();
  NetcdfLibrary functions{};
  find(library, "nc_create", functions.nc_create);
  find(library, "nc_sync", functions.nc_sync);
  find(library, "nc_close", functions.nc_close);
  find(library, "nc_strerror", functions.nc_strerror);
  find(library, "nc_def_dim", functions.nc_def_dim);
  find(library, "nc_def_var", functions.nc_def_var);
  find(library, "nc_def_var_fill", functions.nc_def_var_fill);
  find(library, "nc_def_var_chunking", functions.nc_def_var_chunking);
  find(library, "nc_def_var_deflate", functions.nc_def_var_deflate);
  find(library, "nc_put_att_text", functions.nc_put_att_text);
  find(library, "nc_put_att_double", functions.nc_put_att_double);
  find(library, "nc_put_var_double", functions.nc_put_var_double);
  find(library, "nc_put_var_float", functions.nc_put_var_float);
  find(library, "nc_put_var_int", functions.nc_put_var_int);
  find(library, "nc_put_var_string", functions.nc_put_var_string);
  find(library, "nc_put_vara_short", functions.nc_put_vara_short);
  return functions;
}

}  // namespace

const NetcdfLibrary& netcdf_library() {
  static const NetcdfLibrary library = load();
  return library;
}

}  // namespace veldmark::extract
