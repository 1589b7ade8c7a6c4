#include "tersify/condense_gzip.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "companion/line_buffer.h"
#include "tersify/condense_netcdf.h"
#include "tersify/condense_text.h"
#include "tersify/file_bytes.h"
#include "tersify/gzip_format.h"
#include "tersify/gzip_reader.h"
#include "tersify/netcdf_format.h"
#include "tersify/text_file.h"
#include "util/failure.h"
#include "util/in_quotes.h"
#include "util/part_file.h"
#include "util/piece_size.h"

namespace veldmark::tersify {
namespace {

// Reads the next `size` bytes, or the rest if there are fewer.
std::string take(GzipReader& reader, std::size_t size) {
  std::string bytes;
  bytes.resize(size);
  bytes.resize(reader.read(bytes.data(), bytes.size()));
  return bytes;
}

// Returns a reader of `beginning` followed by the rest of `reader`.
companion::LineBuffer::ReadMore reader_after(std::string_view beginning,
                                             GzipReader& reader) {
  return [rest = beginning, &reader](char* buffer, std::size_t size) mutable {
    if (rest.empty()) {
      return reader.read(buffer, size);
    }
    const std::size_t count = rest.copy(buffer, size);
    rest.remove_prefix(count);
    return count;
  };
}

// If the text is invalid, the file is read to its end: only the checksum there tells
// whether the file is damaged.
Condensed condense_text_of(const CondenseJob& job, const std::string& beginning,
                           std::optional<std::int64_t> size, GzipReader& reader) {
  try {
    return condense_text(job, {.beginning = beginning,
                               .size = size,
                               .read_more = reader_after(beginning, reader)});
  } catch (const TextFault&) {
    reader.read_to_end();
    throw;
  }
}

// Decompresses to a temporary file, which is removed in any case, and condenses that.
Condensed condense_netcdf_of(const CondenseJob& job, const std::string& beginning,
                             std::optional<std::int64_t> size, GzipReader& reader) {
  require_netcdf(job);  // before hundreds of megabytes are decompressed
  const std::string name = job.output.value_or(condensed_name(job.name)) + ".nc";
  job.inputs.require_not_an_input(name);
  expect_disk_space(name, size, job.free_space);
  PartFile decompressed(name);
  decompressed.write(beginning);
  std::vector<char> buffer(kPieceSize);
  while (const std::size_t count = reader.read(buffer.data(), buffer.size())) {
    decompressed.write(std::string_view(buffer.data(), count));
  }
  // The netCDF library locks HDF5 files itself. Files of other formats stay locked
  // here, so that no other run takes this one's file for abandoned.
  if (is_hdf5(beginning)) {
    decompressed.release_lock();
  }
  return condense_netcdf(PartFile::part_name(name), job);
}

// Returns warnings: gzip's own, and one if the file has several members.
std::vector<std::string> warnings_about(const std::string& name,
                                        const GzipReader& reader) {
  std::vector<std::string> found;
  if (reader.members() > 1) {
    found.push_back(in_quotes(name) + " has " + std::to_string(reader.members()) +
                    " compressed members; they were read one after the other");
  }
  if (reader.has_trailing_garbage()) {
    found.push_back(in_quotes(name) + ": trailing garbage ignored");
  }
  return found;
}

}  // namespace

Condensed condense_gzip(const CondenseJob& job, const companion::InputFile& input) {
  FileBytes bytes(input, job.screen);
  GzipReader reader(job.name, [&](char* buffer, std::size_t size) {
    return bytes.read(buffer, size);
  });
  const std::string beginning = take(reader, companion::kLongestLine);
  refuse_compressed(job.name, beginning);
  const std::optional<std::int64_t> size = least_decompressed_size(input);
  Condensed done = is_netcdf(beginning)
                       ? condense_netcdf_of(job, beginning, size, reader)
                       : condense_text_of(job, beginning, size, reader);
  done.size_before = bytes.count();
  for (std::string& warning : warnings_about(job.name, reader)) {
    done.warnings.push_back(std::move(warning));
  }
  return done;
}

}  // namespace veldmark::tersify
