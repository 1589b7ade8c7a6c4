// Tersify's reading of netCDF: units of time, headers, values, and whole files. What it
// condenses must be what a plain definition makes of the values.

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz_input.h"
#include "reached.h"
#include "require.h"
#include "support/classic_netcdf.h"
#include "support/scratch_folder.h"
#include "tersify/condense_netcdf.h"
#include "tersify/netcdf_classic.h"
#include "tersify/netcdf_fault.h"
#include "tersify/netcdf_time.h"
#include "tersify/netcdf_values.h"
#include "util/failure.h"

namespace veldmark::fuzz {
namespace {

using testing::ClassicHeader;
using testing::file_content;
using testing::InFolder;
using testing::ScratchFolder;

constexpr float kFill = 9.96921e+36F;
constexpr std::size_t kRows = 360;
constexpr std::size_t kColumns = 720;
constexpr std::size_t kMonths = 12;
constexpr std::size_t kFloat = 4;
constexpr std::size_t kBytesPerLine = 3601;

// Offsets of the parts of the file; the space after the header is unused.
constexpr std::size_t kLons = 4096;
constexpr std::size_t kLats = kLons + kColumns * kFloat;
constexpr std::size_t kRecords = kLats + kRows * kFloat;
constexpr std::size_t kRecordSize = kFloat + kRows * kColumns * kFloat;

// --- Units, headers, values alone

void check_units(FuzzInput& input) {
  const double days = input.between(-30000, 30000) / 8.0;
  const std::string calendar = input.flag() ? "standard" : "proleptic_gregorian";
  try {
    const tersify::DaysSince since(input.rest(), calendar);
    reached("units read");
    const auto month = since.month_of(days);
    require(month.ok(), "a time is in a month");
    const auto later = since.month_of(days + 31);
    require(month < later && later <= month + std::chrono::months(2),
            "31 days later it is one of the two next months");
  } catch (const tersify::NetcdfFault&) {
    reached("units refused");
  }
}

// The minimum size, found with reads of `piece` bytes; nullopt after a fault.
std::optional<std::uint64_t> least_size(std::string_view bytes, std::size_t piece) {
  try {
    return tersify::least_classic_size([&](char* buffer, std::size_t size) {
      const std::size_t count = bytes.copy(buffer, std::min(size, piece));
      bytes.remove_prefix(count);
      return count;
    });
  } catch (const tersify::NetcdfFault&) {
    return std::nullopt;
  }
}

void check_header(FuzzInput& input) {
  const std::size_t piece = 1U + input.byte();
  const std::string bytes = "CDF" + input.rest();
  const auto size = least_size(bytes, bytes.size());
  reached(size ? "headers read" : "headers refused");
  require(size == least_size(bytes, piece), "the size of the reads doesn't matter");
}

// The field of a value, from its decimal text; nullopt for a bad value.
std::optional<std::string> plain_field(float value) {
  constexpr std::size_t kWidth = 5;
  if (value == kFill) return " -999";
  if (!std::isfinite(value)) return std::nullopt;
  const double tenths = double{value} * 10;
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.0f", tenths);
  std::string field = text.data();
  if (field == "-0") field = "0";
  if (std::abs(tenths - std::strtod(text.data(), nullptr)) > 0.01) return std::nullopt;
  if (field.size() > kWidth || field == "-999") return std::nullopt;
  return std::string(kWidth - field.size(), ' ') + field;
}

// --- A whole file

std::string bytes_of(float value) {
  const auto bits = std::bit_cast<std::uint32_t>(value);
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8) {
    bytes += static_cast<char>(bits >> shift & 0xffU);
  }
  return bytes;
}

std::string header_bytes(const std::string& units) {
  ClassicHeader header(2);
  const auto variable = [&](const char* name,
                            std::vector<std::uint64_t> dimensions) -> ClassicHeader& {
    header.name(name).count(dimensions.size());
    for (const std::uint64_t dimension : dimensions) header.count(dimension);
    return header;
  };
  header.count(kMonths).list(ClassicHeader::kDimensions, 3);
  header.name("time").count(0).name("lat").count(kRows).name("lon").count(kColumns);
  header.no_list().list(ClassicHeader::kVariables, 4);
  constexpr std::uint64_t kType = ClassicHeader::kFloat;
  variable("lon", {2}).no_list().word(kType).count(kLats - kLons).offset(kLons);
  variable("lat", {1}).no_list().word(kType).count(kRecords - kLats).offset(kLats);
  variable("time", {0}).list(ClassicHeader::kAttributes, 1);
  header.text_attribute("units", units).word(kType).count(kFloat).offset(kRecords);
  variable("tmp", {0, 1, 2}).list(ClassicHeader::kAttributes, 1).name("_FillValue");
  header.word(kType).count(1).word(std::bit_cast<std::uint32_t>(kFill));
  header.word(kType).count(kRecordSize - kFloat).offset(kRecords + kFloat);
  return header.bytes();
}

// A year without values.
std::string whole_file() {
  std::string file = header_bytes("days since 1900-1-1");
  file.resize(kLons);
  const auto add = [&](double value) { file += bytes_of(static_cast<float>(value)); };
  for (std::size_t i = 0; i < kColumns; ++i) add(0.5 * static_cast<double>(i) - 179.75);
  for (std::size_t i = 0; i < kRows; ++i) add(0.5 * static_cast<double>(i) - 89.75);
  std::string empty;
  for (std::size_t i = 0; i < kRows * kColumns; ++i) empty += bytes_of(kFill);
  for (std::size_t month = 0; month < kMonths; ++month) {
    add(380 + 30.4 * static_cast<double>(month));
    file += empty;
  }
  return file;
}

constexpr const char* kName = "grid.tmp.nc";
constexpr const char* kCopy = "grid.tmp.new";

// The file on the disk, whose edits are undone after each input.
class EditedFile {
 public:
  EditedFile() { testing::write_file(folder_.path() / kName, whole_); }

  [[nodiscard]] const std::filesystem::path& folder() const { return folder_.path(); }

  void edit(std::size_t place, const std::string& bytes) {
    put(place, bytes);
    edits_.push_back({place, bytes.size()});
  }

  void cut(std::size_t size) {
    std::filesystem::resize_file(folder_.path() / kName, size);
    edits_.push_back({size, whole_.size() - size});
  }

  void take_back() {
    for (const auto& [place, size] : edits_) put(place, whole_.substr(place, size));
    edits_.clear();
  }

 private:
  struct Edit {
    std::size_t place;
    std::size_t size;
  };

  void put(std::size_t place, const std::string& bytes) const {
    std::fstream file(folder_.path() / kName,
                      std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(static_cast<std::streamoff>(place)) << bytes;
  }

  std::string whole_ = whole_file();
  ScratchFolder folder_;
  std::vector<Edit> edits_;
};

// The expected copy if only values are edited.
struct Expected {
  std::string copy;
  bool fault = false;
  bool known = true;
};

const std::string& empty_copy() {
  static const std::string copy = [] {
    std::string line;
    for (std::size_t i = 0; i < kColumns; ++i) line += " -999";
    line += "\n";
    std::string all;
    for (std::size_t i = 0; i < kMonths * kRows; ++i) all += line;
    return all;
  }();
  return copy;
}

float value_of(FuzzInput& input) {
  switch (input.byte() % 4) {
    case 0:
      return static_cast<float>(input.between(-12000, 12000)) / 10;
    case 1:
      return static_cast<float>(input.between(0, 60000)) * 0.2F;
    case 2:
      return static_cast<float>(input.between(-12000, 12000)) / 10 +
             static_cast<float>(input.between(-20, 20)) / 10000;
    default:
      break;
  }
  std::uint32_t bits = 0;
  for (int i = 0; i < 4; ++i) bits = bits << 8 | input.byte();
  return std::bit_cast<float>(bits);
}

void edit_value(FuzzInput& input, EditedFile& file, Expected& expected) {
  const auto month = static_cast<std::size_t>(input.between(0, kMonths - 1));
  const auto row = static_cast<std::size_t>(input.between(0, kRows - 1));
  const auto column = static_cast<std::size_t>(input.between(0, kColumns - 1));
  const float value = value_of(input);
  file.edit(
      kRecords + month * kRecordSize + kFloat + (row * kColumns + column) * kFloat,
      bytes_of(value));
  const std::optional<std::string> field = plain_field(value);
  if (!field) {
    expected.fault = true;
    return;
  }
  expected.copy.replace((month * kRows + row) * kBytesPerLine + column * 5, 5, *field);
}

// Several edits can hit one cell: the last one counts, and can undo a fault.
void edit_file(FuzzInput& input, EditedFile& file, Expected& expected) {
  const int edits = input.byte() % 5;
  for (int i = 0; i < edits; ++i) {
    const std::uint8_t kind = input.byte() % 8;
    if (kind < 4) {
      expected.known = expected.known && !expected.fault;
      edit_value(input, file, expected);
      continue;
    }
    expected.known = false;
    if (kind == 4) {
      file.edit(static_cast<std::size_t>(input.between(4, 400)),
                std::string(1, static_cast<char>(input.byte())));
    } else if (kind == 5) {
      const auto place =
          static_cast<std::size_t>(input.between(0, kColumns + kRows - 1));
      file.edit(kLons + place * kFloat, bytes_of(value_of(input)));
    } else if (kind == 6) {
      const auto month = static_cast<std::size_t>(input.between(0, kMonths - 1));
      file.edit(kRecords + month * kRecordSize, bytes_of(value_of(input)));
    } else {
      file.cut(kRecords + kMonths * kRecordSize - 1 -
               static_cast<std::size_t>(input.between(0, 20000)));
      return;  // an edit would make it longer again
    }
  }
}

void check_copy(const tersify::Condensed& done, const Expected& expected) {
  reached("netCDF files condensed");
  require(done.output == kCopy, "the copy has the file's name", done.output);
  require(done.lines % static_cast<std::int64_t>(kMonths * kRows) == 0,
          "a copy has whole years");
  require(done.size_after == done.lines * static_cast<std::int64_t>(kBytesPerLine),
          "the counts are those of the copy");
  require(
      std::filesystem::file_size(kCopy) == static_cast<std::size_t>(done.size_after),
      "the copy is whole");
  require(!expected.known || !expected.fault, "a value at fault is refused");
  require(!expected.known || file_content(kCopy) == expected.copy,
          "the values are those of the file");
  std::filesystem::remove(kCopy);
}

void check_file(FuzzInput& input) {
  static EditedFile file;
  const InFolder in_folder(file.folder());
  Expected expected{.copy = empty_copy()};
  edit_file(input, file, expected);
  std::ostringstream nobody;
  const companion::ProgressLine::Screen screen{.stream = nobody};
  try {
    const auto done = tersify::condense_netcdf(
        kName, {kName, std::nullopt, tersify::system_free_space, screen});
    check_copy(done, expected);
  } catch (const Failure& failure) {
    reached("netCDF files refused");
    const std::string_view what = failure.what();
    require(what.starts_with("'grid.tmp.nc': "), "a failure names the file", what);
    require(!expected.known || expected.fault, "a good file is condensed", what);
    require(!expected.known || what.find(" times ") != std::string_view::npos,
            "a value at fault is named", what);
  }
  require(std::distance(std::filesystem::directory_iterator("."), {}) == 1,
          "nothing is left beside the file");
  file.take_back();
}

void check_value(FuzzInput& input) {
  while (!input.empty()) {
    const float value = value_of(input);
    const auto stored = tersify::stored_value(double{value}, 10);
    const auto field = plain_field(value);
    reached(stored ? "values stored" : "values refused");
    const bool is_code = value == kFill || stored == -999;
    require(is_code || stored.has_value() == field.has_value(),
            "a value is refused when its text is");
    require(is_code || !stored || *stored == std::stoi(*field),
            "a value is stored as its text says");
  }
}

}  // namespace
}  // namespace veldmark::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace veldmark::fuzz;  // NOLINT
  FuzzInput input(data, size);
  switch (input.byte() % 8) {
    case 0:
      check_units(input);
      break;
    case 1:
      check_header(input);
      break;
    case 2:
      check_value(input);
      break;
    default:
      check_file(input);
  }
  return 0;
}
