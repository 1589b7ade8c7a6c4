// Writes a netCDF-4 file through the netCDF C library.

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

// The file appears under its name only when it is complete. Every member function
// throws Failure "cannot write NAME: reason". Dimensions and variables have the
// library's ids.
class NetcdfFile {
 public:
  // An incomplete file stays open in the library: closing or aborting it after a failed
  // write, on a full disk for example, crashes there.
  NetcdfFile(const std::string& name, PartFile::IfExists if_exists);
  ~NetcdfFile() = default;
  NetcdfFile(const NetcdfFile&) = delete;
  NetcdfFile& operator=(const NetcdfFile&) = delete;
  NetcdfFile(NetcdfFile&&) = delete;
  NetcdfFile& operator=(NetcdfFile&&) = delete;

  int add_dimension(std::string_view name, std::size_t size);

  enum class Type { kShort, kInt, kFloat, kDouble, kString };
  int add_variable(std::string_view name, Type type, std::span<const int> dimensions);

  // An empty text adds nothing. kGlobal instead of a variable stands for the file.
  static constexpr int kGlobal = -1;
  void add_text(int variable, std::string_view attribute, std::string_view text);
  void add_number(int variable, std::string_view attribute, double number);

  // Sets how a variable of 16-bit integers is stored: its fill value, the sizes of its
  // chunks, and the level of compression, 0 for none.
  void set_storage(int variable, std::int16_t MissingCode,
                   std::span<const std::size_t> chunks, std::int32_t deflate);

  // The library's default fill values, and the function that sets one for a variable.
  static constexpr std::int32_t kFillInt = -2147483647;
  static constexpr float kFillFloat = 9.9692099683868690e+36F;
  static constexpr double kFillDouble = 9.9692099683868690e+36;
  void set_fill_value(int variable, std::int32_t missing);
  void set_fill_value(int variable, float missing);
  void set_fill_value(int variable, double missing);

  // Sets the level of a variable's compression, 0 for none.
  void compress(int variable, std::int32_t deflate);

  // Writes a whole variable. The first values end the definitions; only `put` and
  // `complete` may follow.
  void put(int variable, std::span<const double> values);
  void put(int variable, std::span<const float> values);
  void put(int variable, std::span<const std::int32_t> values);
  void put(int variable, std::span<const std::string> values);

  // Writes a part of a variable: `counts` values from `starts` on, per dimension.
  void put(int variable, std::span<const std::size_t> starts,
           std::span<const std::size_t> counts, std::span<const std::int16_t> values);

  // Closes the file and renames it to its name.
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
