// A netCDF-4 file that is written, through the netCDF C library.

#ifndef VELDMARK_EXTRACT_NETCDF_FILE_H_
#define VELDMARK_EXTRACT_NETCDF_FILE_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "util/part_file.h"

namespace veldmark::extract {

struct NetcdfLibrary;

// The file appears under its name only when it is complete. Every member throws Failure
// "cannot write NAME: reason". Dimensions and variables are known by their numbers.
class NetcdfFile {
 public:
  // A file that is left unfinished stays open in the library: giving it up crashes
  // there where a write has failed before, on a full disk for example.
  NetcdfFile(const std::string& name, PartFile::Earlier earlier);
  ~NetcdfFile() = default;
  NetcdfFile(const NetcdfFile&) = delete;
  NetcdfFile& operator=(const NetcdfFile&) = delete;
  NetcdfFile(NetcdfFile&&) = delete;
  NetcdfFile& operator=(NetcdfFile&&) = delete;

  int add_dimension(std::string_view name, std::size_t size);

  enum class Type { kShort, kInt, kFloat, kDouble, kString };
  int add_variable(std::string_view name, Type type, std::span<const int> dimensions);

  // Empty texts are left out. kGlobal stands for the whole file.
  static constexpr int kGlobal = -1;
  void add_text(int variable, std::string_view attribute, std::string_view text);
  void add_number(int variable, std::string_view attribute, double number);

  // How a variable of 16-bit integers is stored: its missing code, the sizes of its
  // chunks, and the level of compression, 0 for none.
  void set_storage(int variable, std::int16_t MissingCode,
                   std::span<const std::size_t> chunks, std::int32_t deflate);

  // What stands for a value that is not there, and says so of a variable.
  static constexpr std::int32_t kNoInt = -2147483647;
  static constexpr float kNoFloat = 9.9692099683868690e+36F;
  static constexpr double kNoDouble = 9.9692099683868690e+36;
  void fill_with(int variable, std::int32_t missing);
  void fill_with(int variable, float missing);
  void fill_with(int variable, double missing);

  // The level of a variable's compression, 0 for none.
  void compress(int variable, std::int32_t deflate);

  // Ends the definitions; what follows is values.
  void end_definitions();

  // A whole variable.
  void put(int variable, std::span<const double> values);
  void put(int variable, std::span<const float> values);
  void put(int variable, std::span<const std::int32_t> values);
  void put(int variable, std::span<const std::string> values);

  // A part of a variable: `counts` values from `starts` on, along each dimension.
  void put(int variable, std::span<const std::size_t> starts,
           std::span<const std::size_t> counts, std::span<const std::int16_t> values);

  // Closes the file and gives it its name.
  void complete();

 private:
  [[nodiscard]] int create();
  void check(int status) const;

  const NetcdfLibrary& netcdf_;
  std::string name_;
  PartFile part_;
  int file_;
};

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_NETCDF_FILE_H_
