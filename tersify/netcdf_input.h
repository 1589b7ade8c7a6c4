// A netCDF file that is read, through the netCDF C library: the one place that knows
// it.

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

// A variable of the file, known to the library by its number.
//
//   is_real    of single or double precision
//   fill       what the library fills it with where nothing was written, unless an
//              attribute says otherwise
//   chunk      the extent along each dimension of what the file can read or decompress
//              at the least; empty where every value can be read alone
struct NetcdfVariable {
  int number = -1;
  std::string name;
  bool is_real = false;
  double fill = 0;
  std::vector<NetcdfDimension> dimensions{};
  std::vector<std::size_t> chunk{};
};

// Every member throws NetcdfFault when the library can't read the file.
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

  // Returns an attribute that is text; "" where there is none.
  [[nodiscard]] std::string text(const NetcdfVariable& variable,
                                 const char* attribute) const;

  // Returns an attribute that is one number or several; none where there is none.
  [[nodiscard]] std::vector<double> numbers(const NetcdfVariable& variable,
                                            const char* attribute) const;

  // Reads all values of a variable of one dimension.
  [[nodiscard]] std::vector<double> read_all(const NetcdfVariable& variable) const;

  // Reads `counts` values along each dimension from `starts` on, in single precision
  // whatever the variable is of. Requires that `values` has the room.
  void read(const NetcdfVariable& variable, std::span<const std::size_t> starts,
            std::span<const std::size_t> counts, std::span<float> values) const;

 private:
  [[nodiscard]] NetcdfVariable describe(int number) const;

  int file_;
  std::vector<NetcdfVariable> variables_;
};

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_NETCDF_INPUT_H_
