// Reads netCDF files. The only code of tersify that uses the netCDF C library.

#ifndef VELDMARK_TERSIFY_NETCDF_INPUT_H_
#define VELDMARK_TERSIFY_NETCDF_INPUT_H_

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace veldmark::tersify {

struct NetcdfDimension {
  std::string name;
  std::size_t length = 0;
};

// A variable of the file.
//
//   number     the library's id of the variable
//   is_real    float or double
//   fill       the library's default fill value
//   chunk      the lengths of a chunk along the dimensions; empty if the variable is
//              stored contiguously
struct NetcdfVariable {
  int number{};
  std::string name;
  bool is_real{};
  double fill{};
  std::vector<NetcdfDimension> dimensions{};
  std::vector<std::size_t> chunk{};
};

// An open netCDF file. Every member throws NetcdfFault if the library can't read the
// file.
class NetcdfInput {
 public:
  explicit NetcdfInput(const std::string& path);
  ~NetcdfInput();
  NetcdfInput(const NetcdfInput&) = delete;
  NetcdfInput& operator=(const NetcdfInput&) = delete;
  NetcdfInput(NetcdfInput&&) = delete;
  NetcdfInput& operator=(NetcdfInput&&) = delete;

  [[nodiscard]] const std::vector<NetcdfVariable>& variables() const {
    return variables_;
  }

  // Returns a text attribute; "" if there is none.
  [[nodiscard]] std::string text(const NetcdfVariable& variable,
                                 const char* attribute) const;

  // Returns the numbers of a numeric attribute; empty if there is none.
  [[nodiscard]] std::vector<double> numbers(const NetcdfVariable& variable,
                                            const char* attribute) const;

  // Returns all values of a one-dimensional variable.
  [[nodiscard]] std::vector<double> read_all(const NetcdfVariable& variable) const;

  // Reads `counts` values along each dimension, from the indices `starts` on, converted
  // to single precision. Requires that the size of `values` is the product of `counts`.
  void read(const NetcdfVariable& variable, std::span<const std::size_t> starts,
            std::span<const std::size_t> counts, std::span<float> values) const;

 private:
  explicit NetcdfInput(int file);

  [[nodiscard]] NetcdfVariable describe(int number) const;

  int file_;  // the library's id of the open file
  std::vector<NetcdfVariable> variables_;
};

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_NETCDF_INPUT_H_
