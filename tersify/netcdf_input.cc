#include "tersify/netcdf_input.h"

#include <netcdf.h>

#include <array>
#include <optional>

#include "tersify/netcdf_fault.h"
#include "util/in_quotes.h"

namespace veldmark::tersify {
namespace {

using Name = std::array<char, NC_MAX_NAME + 1>;

void check(int status) {
  if (status != NC_NOERR) {
    throw NetcdfFault(std::string("the netCDF library can't read it: ") +
                      nc_strerror(status));
  }
}

int open(const std::string& path) {
  int file{};
  check(nc_open(path.c_str(), NC_NOWRITE, &file));
  return file;
}

struct Attribute {
  nc_type type{};
  std::size_t length{};
};

// Returns nullopt if there is no such attribute.
std::optional<Attribute> find_attribute(int file, int variable, const char* name) {
  Attribute found;
  const int status = nc_inq_att(file, variable, name, &found.type, &found.length);
  if (status == NC_ENOTATT) {
    return std::nullopt;
  }
  check(status);
  return found;
}

// Throws NetcdfFault for an attribute that is too long for a published grid file.
void expect_short(const char* name, const Attribute& attribute) {
  constexpr std::size_t kLongest = 1000;
  if (attribute.length > kLongest) {
    throw NetcdfFault(std::string("the attribute ") + name + " has " +
                      std::to_string(attribute.length) + " values; expected one");
  }
}

std::string string_attribute(int file, int variable, const char* name) {
  char* text = nullptr;
  check(nc_get_att_string(file, variable, name, &text));
  std::string copy = text != nullptr ? text : "";
  check(nc_free_string(1, &text));
  return copy;
}

}  // namespace

// Delegates, so that the destructor closes the file also if this throws.
NetcdfInput::NetcdfInput(const std::string& path) : NetcdfInput(open(path)) {
  int count{};
  check(nc_inq_nvars(file_, &count));
  for (int number = 0; number < count; ++number) {
    variables_.push_back(describe(number));
  }
}

NetcdfInput::NetcdfInput(int file) : file_(file) {}

NetcdfInput::~NetcdfInput() { nc_close(file_); }

NetcdfVariable NetcdfInput::describe(int number) const {
  NetcdfVariable variable;
  variable.number = number;
  Name name{};
  nc_type type{};
  int rank{};
  check(nc_inq_var(file_, number, name.data(), &type, &rank, nullptr, nullptr));
  variable.name = name.data();
  variable.is_real = type == NC_FLOAT || type == NC_DOUBLE;
  variable.fill = NC_FILL_DOUBLE;  // that of float is the same in single precision
  std::vector<int> dimensions(static_cast<std::size_t>(rank));
  check(nc_inq_vardimid(file_, number, dimensions.data()));
  for (const int dimension : dimensions) {
    std::size_t length{};
    check(nc_inq_dim(file_, dimension, name.data(), &length));
    variable.dimensions.push_back({name.data(), length});
  }
  int storage{};
  variable.chunk.resize(variable.dimensions.size());
  check(nc_inq_var_chunking(file_, number, &storage, variable.chunk.data()));
  if (storage != NC_CHUNKED) {
    variable.chunk.clear();
  }
  return variable;
}

std::string NetcdfInput::text(const NetcdfVariable& variable,
                              const char* attribute) const {
  const auto found = find_attribute(file_, variable.number, attribute);
  if (!found) {
    return "";
  }
  expect_short(attribute, *found);
  if (found->type == NC_STRING && found->length == 1) {
    return string_attribute(file_, variable.number, attribute);
  }
  std::string text(found->length, '\0');
  check(nc_get_att_text(file_, variable.number, attribute, text.data()));
  return text.substr(0, text.find('\0'));  // some writers include the terminating null
}

std::vector<double> NetcdfInput::numbers(const NetcdfVariable& variable,
                                         const char* attribute) const {
  const auto found = find_attribute(file_, variable.number, attribute);
  if (!found) {
    return {};
  }
  expect_short(attribute, *found);
  std::vector<double> numbers(found->length);
  const int status =
      nc_get_att_double(file_, variable.number, attribute, numbers.data());
  if (status == NC_ECHAR) {
    throw NetcdfFault("the attribute " + std::string(attribute) + " of " +
                      in_quotes(variable.name) + " is text; expected a number");
  }
  check(status);
  return numbers;
}

std::vector<double> NetcdfInput::read_all(const NetcdfVariable& variable) const {
  std::vector<double> values(variable.dimensions.front().length);
  check(nc_get_var_double(file_, variable.number, values.data()));
  return values;
}

void NetcdfInput::read(const NetcdfVariable& variable,
                       std::span<const std::size_t> starts,
                       std::span<const std::size_t> counts,
                       std::span<float> values) const {
  check(nc_get_vara_float(file_, variable.number, starts.data(), counts.data(),
                          values.data()));
}

}  // namespace veldmark::tersify
