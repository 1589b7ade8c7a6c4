#include "extract/netcdf_file.h"

#include "extract/netcdf_library.h"
#include "util/failure.h"
#include "util/in_quotes.h"

namespace veldmark::extract {
namespace {

int type_number(NetcdfFile::Type type) {
  switch (type) {
    case NetcdfFile::Type::kShort:
      return NC_SHORT;
    case NetcdfFile::Type::kInt:
      return NC_INT;
    case NetcdfFile::Type::kFloat:
      return NC_FLOAT;
    case NetcdfFile::Type::kString:
      return NC_STRING;
    case NetcdfFile::Type::kDouble:
      break;
  }
  return NC_DOUBLE;
}

static_assert(NetcdfFile::kGlobal == NC_GLOBAL);
static_assert(NetcdfFile::kFillInt == NC_FILL_INT);
static_assert(NetcdfFile::kFillFloat == NC_FILL_FLOAT);
static_assert(NetcdfFile::kFillDouble == NC_FILL_DOUBLE);

}  // namespace

NetcdfFile::NetcdfFile(const std::string& name, PartFile::IfExists if_exists)
    : netcdf_(netcdf_library()), name_(name), part_(name, if_exists), file_(create()) {}

// The library opens the part file by its name and sets its own lock.
int NetcdfFile::create() {
  part_.release_lock();
  int file{};
  check(netcdf_.nc_create(PartFile::part_name(name_).c_str(), NC_NETCDF4, &file));
  return file;
}

int NetcdfFile::add_dimension(std::string_view name, std::size_t size) {
  int dimension{};
  check(netcdf_.nc_def_dim(file_, std::string(name).c_str(), size, &dimension));
  return dimension;
}

int NetcdfFile::add_variable(std::string_view name, Type type,
                             std::span<const int> dimensions) {
  int variable{};
  check(netcdf_.nc_def_var(file_, std::string(name).c_str(), type_number(type),
                           static_cast<int>(dimensions.size()), dimensions.data(),
                           &variable));
  return variable;
}

void NetcdfFile::add_text(int variable, std::string_view attribute,
                          std::string_view text) {
  if (!text.empty()) {
    check(netcdf_.nc_put_att_text(file_, variable, std::string(attribute).c_str(),
                                  text.size(), text.data()));
  }
}

void NetcdfFile::add_number(int variable, std::string_view attribute, double number) {
  check(netcdf_.nc_put_att_double(file_, variable, std::string(attribute).c_str(),
                                  NC_DOUBLE, 1, &number));
}

void NetcdfFile::set_storage(int variable, std::int16_t MissingCode,
                             std::span<const std::size_t> chunks,
                             std::int32_t deflate) {
  check(netcdf_.nc_def_var_fill(file_, variable, NC_FILL, &MissingCode));
  check(netcdf_.nc_def_var_chunking(file_, variable, NC_CHUNKED, chunks.data()));
  compress(variable, deflate);
}

void NetcdfFile::set_fill_value(int variable, std::int32_t missing) {
  check(netcdf_.nc_def_var_fill(file_, variable, NC_FILL, &missing));
}

void NetcdfFile::set_fill_value(int variable, float missing) {
  check(netcdf_.nc_def_var_fill(file_, variable, NC_FILL, &missing));
}

void NetcdfFile::set_fill_value(int variable, double missing) {
  check(netcdf_.nc_def_var_fill(file_, variable, NC_FILL, &missing));
}

void NetcdfFile::compress(int variable, std::int32_t deflate) {
  if (deflate > 0) {
    check(netcdf_.nc_def_var_deflate(file_, variable, NC_SHUFFLE, 1, deflate));
  }
}

void NetcdfFile::put(int variable, std::span<const double> values) {
  check(netcdf_.nc_put_var_double(file_, variable, values.data()));
}

void NetcdfFile::put(int variable, std::span<const float> values) {
  check(netcdf_.nc_put_var_float(file_, variable, values.data()));
}

void NetcdfFile::put(int variable, std::span<const std::int32_t> values) {
  check(netcdf_.nc_put_var_int(file_, variable, values.data()));
}

void NetcdfFile::put(int variable, std::span<const std::string> values) {
  std::vector<const char*> texts;
  for (const std::string& value : values) {
    texts.push_back(value.c_str());
  }
  check(netcdf_.nc_put_var_string(file_, variable, texts.data()));
}

void NetcdfFile::put(int variable, std::span<const std::size_t> starts,
                     std::span<const std::size_t> counts,
                     std::span<const std::int16_t> values) {
  check(netcdf_.nc_put_vara_short(file_, variable, starts.data(), counts.data(),
                                  values.data()));
}

void NetcdfFile::complete() {
  // nc_close crashes if it can't write what is left; nc_sync reports it.
  check(netcdf_.nc_sync(file_));
  check(netcdf_.nc_close(file_));
  part_.complete(PartFile::Durability::kUnsynced);
}

void NetcdfFile::check(int status) const {
  if (status != NC_NOERR) {
    throw Failure("cannot write " + in_quotes(name_) + ": " +
                  netcdf_.nc_strerror(status));
  }
}

}  // namespace veldmark::extract
