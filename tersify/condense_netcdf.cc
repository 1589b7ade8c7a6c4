#include "tersify/condense_netcdf.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "companion/input_file.h"
#include "grid/grid_layout.h"
#include "tersify/netcdf_classic.h"
#include "tersify/netcdf_fault.h"
#include "tersify/netcdf_input.h"
#include "tersify/netcdf_layout.h"
#include "tersify/netcdf_tiles.h"
#include "tersify/netcdf_values.h"
#include "tersify/release_years.h"
#include "util/failure.h"
#include "util/in_quotes.h"
#include "util/interrupt_watch.h"
#include "util/part_file.h"

namespace veldmark::tersify {
namespace {

using companion::InputFile;

constexpr std::int64_t kBytesPerLine = kLineLength + 1;
constexpr std::int64_t kBytesPerMonth = kGridRows * kBytesPerLine;

// Throws NetcdfFault if the file is shorter than its header says.
void expect_whole(const std::string& path) {
  const InputFile file(path, InputFile::Kind::kRegular);
  const std::uint64_t least = least_classic_size(
      [&](char* buffer, std::size_t size) { return file.read(buffer, size); });
  if (static_cast<std::uint64_t>(file.size()) < least) {
    throw NetcdfFault("the file is cut: it has " + std::to_string(file.size()) +
                      " bytes; expected " + std::to_string(least));
  }
}

// Returns the copy's name. The dialogue finds the drought index under a fixed name
// only, and assumes that it begins in 1901.
std::string output_name(const CondenseJob& job, const NetcdfLayout& layout) {
  if (job.output) {
    return *job.output;
  }
  if (layout.entry.is_in_cru_ts_distribution || layout.years.first != kFirstDataYear) {
    return condensed_name(job.name);
  }
  return std::filesystem::path(job.name)
      .replace_filename(layout.entry.DataFileName.trimmed())
      .string();
}

// Warns if the copy's name gives a wrong first year. Readers of the copy take the first
// year from its name, or assume 1901; the number of years they see from its length.
void note_first_year(const NetcdfLayout& layout, Condensed& done) {
  const std::optional<Years> named = years_in_name(done.output);
  const std::int32_t expected = named ? named->first : kFirstDataYear;
  if (layout.years.first != expected) {
    done.warnings.push_back(
        "warning: " + in_quotes(done.output) + " begins in " +
        std::to_string(layout.years.first) + ", and by its name it begins in " +
        std::to_string(expected) + "; give it a name with its years, as ." +
        std::to_string(layout.years.first) + "." + std::to_string(layout.years.last()) +
        ".");
  }
}

// Copies values from a netCDF file to a condensed file, tile by tile.
class NetcdfCopy {
 public:
  NetcdfCopy(const NetcdfInput& input, const NetcdfLayout& layout, PartFile& file)
      : input_(input),
        layout_(layout),
        lines_(layout.entry, layout.form),
        file_(file) {}

  // Reads a tile and writes its lines at their offsets.
  void condense(const NetcdfTile& tile) {
    const std::size_t size = tile.rows.count * kGridColumns;  // of a month
    values_.resize(tile.months * size);
    input_.read(
        layout_.variable, std::array{tile.first_month, tile.rows.first, std::size_t{0}},
        std::array{tile.months, tile.rows.count, std::size_t{kGridColumns}}, values_);
    for (std::size_t i = 0; i < tile.months; ++i) {
      const std::size_t month = tile.first_month + i;
      const std::span<const float> values = std::span(values_).subspan(i * size, size);
      file_.write_at(
          static_cast<std::int64_t>(month) * kBytesPerMonth +
              static_cast<std::int64_t>(lines_.first_line(tile.rows)) * kBytesPerLine,
          lines_of(month, values, tile.rows));
    }
  }

 private:
  std::string_view lines_of(std::size_t month, std::span<const float> values,
                            const NetcdfRows& rows) {
    InterruptWatch::throw_if_caught();
    try {
      return lines_.make(values, rows);
    } catch (const NetcdfFault& fault) {
      throw NetcdfFault(name_of_month(layout_.years.first, month) + ", " +
                        fault.what());
    }
  }

  const NetcdfInput& input_;
  const NetcdfLayout& layout_;
  NetcdfLines lines_;
  PartFile& file_;
  std::vector<float> values_;
};

// Throws Failure if the output is an input, or the disk has too little free space. The
// job's own file is among its inputs. A decompressed copy of it need not be: it has a
// name of its own, and a PartFile replaces a link, not the file that the link leads to.
void check_preconditions(const CondenseJob& job, const std::string& output,
                         std::int64_t size) {
  job.inputs.require_not_an_input(output);
  expect_disk_space(output, size, job.free_space);
}

Condensed condense(const std::string& path, const CondenseJob& job) {
  expect_whole(path);
  const NetcdfInput input(path);
  const NetcdfLayout layout = find_layout(input, job.name);
  const std::int64_t months = std::int64_t{layout.years.years} * kMonthsPerYear;
  Condensed done;
  done.output = output_name(job, layout);
  check_preconditions(job, done.output, months * kBytesPerMonth);

  PartFile file(done.output);
  companion::ProgressLine progress(job.screen, in_quotes(job.name),
                                   months * kBytesPerMonth);
  NetcdfCopy copy(input, layout, file);
  for (const NetcdfTile& tile : tiles_of(layout.variable)) {
    copy.condense(tile);
    progress.add(static_cast<std::int64_t>(tile.months * tile.rows.count) *
                 kBytesPerLine);
  }
  expect_whole(path);  // again: it may have been cut while it was read
  file.complete();
  done.lines = months * kGridRows;
  done.size_before = InputFile(path, InputFile::Kind::kRegular).size();
  done.size_after = file.size();
  note_first_year(layout, done);
  return done;
}

}  // namespace

void require_netcdf(const CondenseJob& /*job*/) {}

Condensed condense_netcdf(const std::string& path, const CondenseJob& job) {
  try {
    return condense(path, job);
  } catch (const NetcdfFault& fault) {
    throw Failure(in_quotes(job.name) + ": " + fault.what());
  }
}

}  // namespace veldmark::tersify
